// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// HalvarController::loadFile, with a whole controller and its reference lists. What was loaded can be saved,
// comes back the same, and leaves nothing in the controller once the diagnostic is blank again. Runs in a
// private instrument: the controller drives a GPIO line and starts shell commands.
#include <memory>

#include "diagnosticfixture.h"
#include "harness.h"
#include "xmlmutator.h"

namespace {

// One for the whole process: its construction takes half a second.
std::unique_ptr<DiagnosticFixture> diagnostic;
QStringList blank;

const QString Name = QStringLiteral("saved");

/// Units and measures; a check that has no result is not saved, nor is the stage that it led to.
QStringList units()
{
    return diagnostic->state().mid(4);
}

QString difference(const QStringList &expected, const QStringList &found)
{
    return expected.join(QLatin1Char('\n')) + QStringLiteral("\nbecame\n") + found.join(QLatin1Char('\n'));
}

QByteArray save()
{
    (*diagnostic)->setFileName(Name);
    (*diagnostic)->saveFile();
    const QByteArray bytes = diagnostic->saved(Name);
    FUZZ_VERIFY(!bytes.isEmpty());
    return bytes;
}

} // namespace

const fuzz::XmlVocabulary &fuzz::vocabulary()
{
    static const XmlVocabulary words{{"Dossier",
                                      "Informations",
                                      "Date",
                                      "Nom",
                                      "Localisation",
                                      "Justesses",
                                      "Justesse",
                                      "Resultat",
                                      "Uds",
                                      "Ud",
                                      "Local",
                                      "Zone",
                                      "Element",
                                      "Substrat",
                                      "Revetement",
                                      "Statut",
                                      "Observation",
                                      "Mesures",
                                      "Mesure",
                                      "Concentration",
                                      "Sigma",
                                      "NatureDegradation",
                                      "EtatConservation",
                                      "DegradationBatiment",
                                      "Effondrement",
                                      "Coulures",
                                      "Humidite",
                                      "LocauxNonVisites"},
                                     {"Id", "Statut", "Image"},
                                     {"VED",
                                      "RST",
                                      "VEF",
                                      "Confirmée",
                                      "Non Confirmée",
                                      "Non Calibrée",
                                      "Positive",
                                      "Négative",
                                      "Non Mesurée",
                                      "vrai",
                                      "faux",
                                      "Gauche",
                                      "Haut",
                                      "Centre",
                                      "Bas",
                                      "Droite",
                                      "Non visible",
                                      "Etat d'usage",
                                      "Dégradé",
                                      "Non dégradé",
                                      "A",
                                      "Z",
                                      "é",
                                      "Cuisine",
                                      "Mur",
                                      "qrc:/cuisine.png",
                                      "1.23457",
                                      "saved"}};
    return words;
}

void fuzz::prepare()
{
    FUZZ_VERIFY2(qEnvironmentVariableIsSet("HALVAR_INSTRUMENT"),
                 QStringLiteral("run through simulator/instrument"));
    diagnostic = std::make_unique<DiagnosticFixture>();
    diagnostic->clear();
    blank = diagnostic->state();
}

void fuzz::run(const QByteArray &input)
{
    diagnostic->load(input);
    const QStringList expected = units();
    const QByteArray first = save();
    FUZZ_VERIFY(units() == expected);

    (*diagnostic)->initFile();
    (*diagnostic)->loadFile(diagnostic->path(Name));
    FUZZ_VERIFY2(units() == expected, difference(expected, units()));
    const QByteArray second = save();
    FUZZ_VERIFY2(second == first, difference({QString::fromUtf8(first)}, {QString::fromUtf8(second)}));

    diagnostic->clear();
    FUZZ_VERIFY2(diagnostic->state() == blank, difference(blank, diagnostic->state()));
}
