// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QTest>

#include <limits>

#include <nap/records.h>

using namespace com::halvar::nap;
using namespace tessel;

namespace {

/// A value of another type than \p type.
Value otherThan(Types type)
{
    return type == T_ASTRING ? Value(7) : Value(AString("7"));
}

/// One field of a record: absent, set both ways, and of another type.
template <typename Record, typename T, typename Argument>
void checkField(const char *name, Types type, const T &sample, void (Record::*set)(Argument),
                void (Record::*setValue)(const Value &), T (Record::*get)() const,
                bool (Record::*isSet)() const)
{
    Record record;
    const T zero = (record.*get)();
    QVERIFY2(zero == T(), name);
    QVERIFY2(!(record.*isSet)(), name);

    (record.*set)(sample);
    QVERIFY2((record.*isSet)(), name);
    QVERIFY2((record.*get)() == sample, name);
    QVERIFY2(record.is_set(name, type), name);
    QCOMPARE(record.size(), 1);

    const Value typed = record.get(name);
    Record other;
    (other.*setValue)(typed);
    QVERIFY2((other.*isSet)() && (other.*get)() == sample, name);
    QVERIFY2(other == record, name);

    (other.*setValue)(otherThan(type));
    QVERIFY2(!(other.*isSet)(), name);
    QVERIFY2((other.*get)() == T(), name);
    QVERIFY2(other.is_set(name), name);
    (other.*setValue)(Value());
    QVERIFY2(other.isEmpty(), name);
}

template <typename Record>
void checkClass(const char *name)
{
    const Record record;
    QCOMPARE(record.class_name(), QByteArray(name));
    QVERIFY(record.isEmpty());
    QVERIFY(Record::getSymbClassName() == Symbol(name));

    // A tuple that came in under another name, or none, is seen as the record.
    Tuple tuple("another");
    tuple.set("unknown", Value(1));
    const Record view(tuple);
    QCOMPARE(view.class_name(), QByteArray(name));
    QCOMPARE(view.get("unknown").toInt(), 1);
    QCOMPARE(tuple.class_name(), QByteArray("another"));
}

AcqConditions conditions()
{
    AcqConditions record;
    record.set_temperature(21.5);
    return record;
}

DetectionResult detection()
{
    DetectionResult record;
    record.set_value(1.25);
    return record;
}

SpectrumInformation information()
{
    SpectrumInformation record;
    record.set_liveTime(TimePeriod(1500000));
    return record;
}

SpectrumResult spectrum()
{
    SpectrumResult record;
    record.set_information(information());
    return record;
}

MeasureCustomData customData()
{
    MeasureCustomData record;
    record.set_sampleType(AString("paint"));
    return record;
}

} // namespace

// Every field's six operations, by their names.
#define CHECK_FIELD(Record, field, type, sample, Argument)                                                   \
    checkField<Record, std::decay_t<decltype(sample)>, Argument>(#field, type, sample, &Record::set_##field, \
                                                                 &Record::set_##field, &Record::get_##field, \
                                                                 &Record::is_set_##field)

class TstNapRecords : public QObject
{
    Q_OBJECT

private slots:
    void classNames_areThoseOfTheWire()
    {
        checkClass<AcqConditions>("com::halvar::nap::AcqConditions");
        checkClass<DetectionResult>("com::halvar::nap::DetectionResult");
        checkClass<SpectrumInformation>("com::halvar::nap::SpectrumInformation");
        checkClass<SpectrumResult>("com::halvar::nap::SpectrumResult");
        checkClass<MeasureCustomData>("com::halvar::nap::MeasureCustomData");
        checkClass<MeasureSummary>("com::halvar::nap::MeasureSummary");
        checkClass<NotificationMessage>("com::halvar::nap::NotificationMessage");
    }

    void acqConditions_fields()
    {
        CHECK_FIELD(AcqConditions, temperature, T_DOUBLE, 21.5, double);
        CHECK_FIELD(AcqConditions, acceleratingVoltage, T_DOUBLE, -350.25, double);
        CHECK_FIELD(AcqConditions, readyForAcquisition, T_BOOL, true, bool);
        CHECK_FIELD(AcqConditions, acceptableTemperature, T_BOOL, true, bool);
        CHECK_FIELD(AcqConditions, acceptableAcceleratingVoltage, T_BOOL, true, bool);
    }

    void detectionResult_fields()
    {
        CHECK_FIELD(DetectionResult, value, T_DOUBLE, 1.25, double);
        CHECK_FIELD(DetectionResult, sigma, T_DOUBLE, 0.05, double);
        CHECK_FIELD(DetectionResult, decision, T_INT, UNCALIBRATED, DetectionDecision);
        CHECK_FIELD(DetectionResult, algorithmExecutionDetails, T_ASTRING, AString("k"), const AString &);
        CHECK_FIELD(DetectionResult, sourceActivity, T_DOUBLE, 370.0, double);
    }

    void spectrum_fields()
    {
        CHECK_FIELD(SpectrumInformation, liveTime, T_TIME_PERIOD, TimePeriod(1500000), const TimePeriod &);
        CHECK_FIELD(SpectrumResult, information, T_TUPLE, information(), const SpectrumInformation &);
    }

    void measure_fields()
    {
        CHECK_FIELD(MeasureCustomData, sampleType, T_ASTRING, AString("paint"), const AString &);
        CHECK_FIELD(MeasureCustomData, properties, T_TUPLE, Tuple(conditions()), const Tuple &);
        CHECK_FIELD(MeasureSummary, id, T_INT, 42, int);
        CHECK_FIELD(MeasureSummary, spectrumInformation, T_TUPLE, information(), const SpectrumInformation &);
        CHECK_FIELD(MeasureSummary, detectionResult, T_TUPLE, detection(), const DetectionResult &);
        CHECK_FIELD(MeasureSummary, customData, T_TUPLE, customData(), const MeasureCustomData &);
    }

    void notificationMessage_fields()
    {
        CHECK_FIELD(NotificationMessage, id, T_ASTRING, AString("NAP_STATUS"), const AString &);
        CHECK_FIELD(NotificationMessage, component, T_ASTRING, AString("NAP"), const AString &);
        CHECK_FIELD(NotificationMessage, status, T_INT, IN_PROGRESS, AcqStatus);
        CHECK_FIELD(NotificationMessage, conditions, T_TUPLE, conditions(), const AcqConditions &);
        CHECK_FIELD(NotificationMessage, error, T_INT, TIMEOUT_ERROR, AcqError);
        CHECK_FIELD(NotificationMessage, detection, T_TUPLE, detection(), const DetectionResult &);
        CHECK_FIELD(NotificationMessage, spectrum, T_TUPLE, spectrum(), const SpectrumResult &);
    }

    void enumerations_haveTheNumbersOfTheWire()
    {
        const int statuses[] = {NOT_STARTED, IN_PROGRESS, ERROR};
        const int errors[] = {UNKNOWN_ERROR, INVALID_TEMPERATURE, INVALID_ACCELERATING_VOLTAGE,
                              DPP_ERROR,     DATA_MANAGER_ERROR,  TIMEOUT_ERROR};
        const int decisions[] = {POSITIVE,      NEGATIVE,    UNDETERMINED,   INSUFFICIENT_ACQTIME,
                                 COMPTON_ERROR, ACCURACY_OK, ACCURACY_ERROR, UNCALIBRATED};
        for (int i = 0; i < 3; ++i)
            QCOMPARE(statuses[i], i);
        for (int i = 0; i < 6; ++i)
            QCOMPARE(errors[i], i);
        for (int i = 0; i < 8; ++i)
            QCOMPARE(decisions[i], i);
    }

    void valueOutsideItsEnumeration_isCarriedUnchanged_data()
    {
        QTest::addColumn<int>("number");
        for (const int number : {3, 8, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
            QTest::addRow("%d", number) << number;
    }
    void valueOutsideItsEnumeration_isCarriedUnchanged()
    {
        QFETCH(int, number);
        NotificationMessage message;
        message.set_status(Value(number));
        message.set_error(static_cast<AcqError>(number));
        DetectionResult result;
        result.set_decision(static_cast<DetectionDecision>(number));
        QCOMPARE(int(message.get_status()), number);
        QCOMPARE(message.get("error").toInt(), number);
        QCOMPARE(int(result.get_decision()), number);
        QVERIFY(message.is_set_status() && message.is_set_error() && result.is_set_decision());
    }

    void fields_keepTheOrderInWhichTheyWereSet()
    {
        DetectionResult result;
        result.set_sigma(1.0);
        result.set_value(2.0);
        result.set_sigma(3.0);
        QCOMPARE(result.name(0), QByteArray("sigma"));
        QCOMPARE(result.name(1), QByteArray("value"));
        QCOMPARE(result.size(), 2);
    }

    void copies_areValues()
    {
        const DetectionResult before = detection();
        DetectionResult copy = before;
        copy.set_value(9.0);
        QCOMPARE(before.get_value(), 1.25);
        QVariant queued = QVariant::fromValue(before);
        QCOMPARE(queued.value<DetectionResult>().get_value(), 1.25);
    }
};

QTEST_GUILESS_MAIN(TstNapRecords)
#include "tst_nap_records.moc"
