// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include <QAbstractListModel>
#include <QDate>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTest>

#include <functional>
#include <memory>

#include "rowexpression.h"

namespace {

/// Rows of any values, under any names.
class Values : public QAbstractListModel
{
public:
    int rowCount(const QModelIndex & = {}) const override { return rows.size(); }
    QHash<int, QByteArray> roleNames() const override { return names; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (duringRead)
            duringRead();
        return index.isValid() ? rows.at(index.row()).value(QString::fromUtf8(names.value(role)))
                               : QVariant();
    }

    QHash<int, QByteArray> names{{1, "a"}, {2, "b"}};
    QVector<QVariantMap> rows;
    std::function<void()> duringRead;
};

class Holder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QQmlScriptString script MEMBER script)

public:
    QQmlScriptString script;
};

/// What an expression can hand a value to.
class Keeper : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE bool keep(const QJSValue &value)
    {
        kept.append(value);
        return true;
    }
    QList<QJSValue> kept;
};

QVariantMap row(const QVariant &a, const QVariant &b = QVariant())
{
    return {{QStringLiteral("a"), a}, {QStringLiteral("b"), b}};
}

} // namespace

class TstRowExpression : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void anyExpression_seesWhatItSeesInAnObjectOfItsOwn_data();
    void anyExpression_seesWhatItSeesInAnObjectOfItsOwn();
    void plainReads_seeTheSameObjectFilledAnew();
    void plainReads_ofOtherThanPrimitives_seeAnObjectOfTheirOwn();
    void zeroAndMinusZero_areToldApart();
    void roleThatGoes_isNotRemembered();
    void closure_seesTheRowThatIsShown();
    void twoExpressions_doNotShareTheirRows();
    void rowsOfAModelWithoutColumns_haveNoValues();

private:
    QQmlScriptString script(const QByteArray &expression);
    std::unique_ptr<halvar::RowExpression> compiled(const QByteArray &expression);
    QVariant evaluate(halvar::RowExpression &expression, int row);

    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<Keeper> m_keeper;
    std::vector<std::unique_ptr<Holder>> m_holders;
    std::unique_ptr<Values> m_values;
};

void TstRowExpression::init()
{
    qmlRegisterType<Holder>("Test", 1, 0, "Holder");
    m_engine = std::make_unique<QQmlEngine>();
    m_keeper = std::make_unique<Keeper>();
    m_values = std::make_unique<Values>();
    m_engine->rootContext()->setContextProperty(QStringLiteral("keeper"), m_keeper.get());
}

void TstRowExpression::cleanup()
{
    m_holders.clear();
    m_keeper.reset();
    m_engine.reset();
}

QQmlScriptString TstRowExpression::script(const QByteArray &expression)
{
    QQmlComponent component(m_engine.get());
    component.setData("import Test 1.0\nHolder {\nscript: " + expression + "\n}",
                      QUrl(QStringLiteral("holder.qml")));
    m_holders.emplace_back(qobject_cast<Holder *>(component.create()));
    if (!m_holders.back())
        qFatal("%s", qPrintable(component.errorString()));
    return m_holders.back()->script;
}

std::unique_ptr<halvar::RowExpression> TstRowExpression::compiled(const QByteArray &expression)
{
    const QQmlScriptString text = script(expression);
    return std::make_unique<halvar::RowExpression>(
        text, std::make_unique<QQmlContext>(qmlContext(m_holders.back().get())),
        QVector<halvar::RowNames>{
            {QString::fromUtf8(expression), QStringLiteral("model"), QStringLiteral("index")}});
}

QVariant TstRowExpression::evaluate(halvar::RowExpression &expression, int row)
{
    expression.show(0, *m_values, row, m_values->index(row));
    const QVariant result = expression.evaluate();
    if (expression.hasError())
        return expression.error().description();
    return result;
}

void TstRowExpression::anyExpression_seesWhatItSeesInAnObjectOfItsOwn_data()
{
    QTest::addColumn<QByteArray>("expression");
    for (const char *expression : {
             // Reads, which see the same object each time.
             "model.a",
             "typeof model.a + typeof model.b",
             "model.a < model.b",
             "model.a + model.b",
             "model.a === model.a",
             "1 / model.a",
             "index + model.a",
             "String(model.nothing)",
             "{ const x = model.a; return x === model.b ? -1 : String(x) }",
             "model.a ? [model.a, model.b].join() : model.b && String(model.b)",
             "String(model.a).length > 1",
             // What tells objects apart, or changes them.
             "model === model",
             "model.a = index",
             "(model.a = 7, model.a)",
             "{ (model.a) = 7; return model.a }",
             "{ model.a += 'x'; return model.a }",
             "(model.a++, model.a)",
             "(--model.b, model.b)",
             "delete model.a && typeof model.a",
             "{ [model.a] = [9]; return model.a }",
             "{ ({ x: model.a } = { x: 9 }); return model.a }",
             "{ for (model.a of [1, 2]) {} return model.a }",
             "{ for (model.a in { x: 1 }) {} return model.a }",
             "{ model.a\n/* , */ = 9; return model.a }",
             "{ model.a\n// ,\n= 9; return model.a }",
             "(model.valueOf)().a",
             "{ const m = (model.valueOf)(); m.a = 9; return m.a + Object.keys(m).sort().join() }",
             "{ model.c = 3; return String(model.c) }",
             "{ const x = Object.prototype; x.d = 1; const y = model.d; delete x.d; return y }",
             "{ let x = keeper.last; keeper.last === undefined; return Object.keys(model).join() }",
             "JSON.stringify(model)",
         })
        QTest::newRow(expression) << QByteArray(expression);
}

void TstRowExpression::anyExpression_seesWhatItSeesInAnObjectOfItsOwn()
{
    QFETCH(QByteArray, expression);
    m_values->rows = {
        row(1, 2),
        row(1, 2),
        row(2, 1),
        row(2u, 1.0),
        row(2.5f, qlonglong(-3)),
        row(QStringLiteral("x"), QString()),
        row(QStringLiteral("x"), QStringLiteral("y")),
        row(true, false),
        row(QVariant(), 0.0),
        row(-0.0, quint64(1) << 53),
        row(0.0, 0),
        row(qQNaN(), QVariantList{1, 2}),
        row(qQNaN(), qInf()),
        row(QDate(2026, 1, 2), QStringLiteral("1")),
        row(QVariant::fromValue(Qt::DescendingOrder), QVariant::fromValue<QObject *>(m_keeper.get())),
        row(4, 5),
    };
    const auto ours = compiled(expression);
    QQmlContext context(qmlContext(m_holders.back().get()));
    QQmlExpression naive(m_holders.back()->script, &context);
    const auto described = [](const QVariant &value) {
        return QStringLiteral("%1 %2").arg(QString::fromLatin1(value.typeName()), value.toString());
    };
    for (int i = 0; i < 2 * m_values->rowCount(); ++i) {
        const int number = i % m_values->rowCount();
        context.setContextProperty(QStringLiteral("model"), m_values->rows.at(number));
        context.setContextProperty(QStringLiteral("index"), number);
        const QVariant expected = naive.evaluate();
        QCOMPARE(described(evaluate(*ours, number)),
                 described(naive.hasError() ? naive.error().description() : expected));
        QVERIFY2(expected.isValid() || number < m_values->rowCount() - 1, "meant to come to something");
        naive.clearError();
        ours->clearError();
    }
}

void TstRowExpression::plainReads_seeTheSameObjectFilledAnew()
{
    m_values->rows = {row(1, 2), row(3, 4)};
    const auto expression = compiled("model.a + model.b");
    const auto shown = [&] { return expression->context()->contextProperty(QStringLiteral("model")); };
    QCOMPARE(evaluate(*expression, 0), QVariant(3));
    const QJSValue first = shown().value<QJSValue>();
    QVERIFY(first.isObject());
    QCOMPARE(evaluate(*expression, 1), QVariant(7));
    QVERIFY(shown().value<QJSValue>().strictlyEquals(first));
    m_values->rows[1] = row(5, 4);
    QCOMPARE(evaluate(*expression, 1), QVariant(9));
    QVERIFY(shown().value<QJSValue>().strictlyEquals(first));
}

void TstRowExpression::plainReads_ofOtherThanPrimitives_seeAnObjectOfTheirOwn()
{
    const QVariantList numbers{1, 2};
    m_values->rows = {row(1, 2), row(numbers, 2), row(3, 2)};
    const auto expression = compiled("{ if (index === 1) model.a.push(7);"
                                     " return keeper.keep(index === 1 ? model.a.length : model.a) }");
    for (int number : {0, 1, 1, 2, 0})
        evaluate(*expression, number);
    QList<int> kept;
    for (const QJSValue &value : qAsConst(m_keeper->kept))
        kept.append(value.toInt());
    QCOMPARE(kept, QList<int>({1, 2, 2, 3, 1}));
}

void TstRowExpression::zeroAndMinusZero_areToldApart()
{
    m_values->rows = {row(0.0), row(-0.0), row(0.0f), row(-0.0f)};
    const auto expression = compiled("1 / model.a");
    for (int i = 0; i < 8; ++i)
        QCOMPARE(evaluate(*expression, i % 4).toDouble(), i % 2 ? -qInf() : qInf());
}

void TstRowExpression::roleThatGoes_isNotRemembered()
{
    m_values->rows = {row(1, 2)};
    const auto expression = compiled("typeof model.a + typeof model.b");
    QCOMPARE(evaluate(*expression, 0).toString(), QStringLiteral("numbernumber"));
    m_values->names = {{2, "b"}};
    QCOMPARE(evaluate(*expression, 0).toString(), QStringLiteral("undefinednumber"));
    m_values->names = {{7, "b"}, {3, "a"}};
    QCOMPARE(evaluate(*expression, 0).toString(), QStringLiteral("numbernumber"));
    // Between two reads of one row, by a getter: what was begun with the old names is finished with them.
    m_values->duringRead = [this] { m_values->names = {{7, "b"}}; };
    evaluate(*expression, 0);
    m_values->duringRead = nullptr;
    QCOMPARE(evaluate(*expression, 0).toString(), QStringLiteral("undefinednumber"));
}

void TstRowExpression::closure_seesTheRowThatIsShown()
{
    m_values->rows = {row(1), row(2), row(QDate(2026, 1, 2)), row(3)};
    const auto expression = compiled("keeper.keep(function() { return model.a })");
    evaluate(*expression, 0);
    QJSValue kept = m_keeper->kept.first();
    QCOMPARE(kept.call().toInt(), 1);
    evaluate(*expression, 1);
    QCOMPARE(kept.call().toInt(), 2);
    evaluate(*expression, 2);
    QVERIFY(kept.call().isDate());
    evaluate(*expression, 3);
    QCOMPARE(kept.call().toInt(), 3);
}

void TstRowExpression::twoExpressions_doNotShareTheirRows()
{
    m_values->rows = {row(1), row(2)};
    const auto outer = compiled("model.a");
    outer->show(0, *m_values, 0, m_values->index(0));
    const auto inner = compiled("model.a");
    QCOMPARE(evaluate(*inner, 1), QVariant(2));
    QCOMPARE(outer->evaluate(), QVariant(1));
}

void TstRowExpression::rowsOfAModelWithoutColumns_haveNoValues()
{
    for (const char *expression : {"[index, typeof model.a].join()",
                                   "[index, Object.keys(model).length === 2 && typeof model['a']].join()"}) {
        const auto compiledOne = compiled(expression);
        compiledOne->show(0, *m_values, 3, QModelIndex());
        QCOMPARE(compiledOne->evaluate().toString(), QStringLiteral("3,undefined"));
    }
}

QTEST_GUILESS_MAIN(TstRowExpression)
#include "tst_rowexpression.moc"
