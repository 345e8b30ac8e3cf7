// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
//
// The diagnostic as a whole: blank, saved, loaded.
#include "model.h"

namespace orders {

namespace {

enum AccuracyDecision {
    Confirmed = 5,
    NotConfirmed = 6,
    Uncalibrated = 7
};
enum Stage {
    Live,
    Init,
    Interrupt,
    Final
};

bool isChecked(const MeasureModel &accuracy)
{
    return accuracy.shown.decision == Confirmed || accuracy.shown.decision == NotConfirmed;
}

/// The measures as a file gives them back: of the decisions only the two that count.
MeasuresModel reloaded(const MeasuresModel &measures, const std::string &list, int &lastNumber)
{
    MeasuresModel ret{list, {}};
    Effects untold; // nobody knows the measure yet
    for (const MeasureModel &saved : measures.rows) {
        if (saved.gone)
            continue;
        MeasureModel measure("measure " + std::to_string(++lastNumber));
        measure.setId(saved.shown.id, untold);
        measure.setConcentration(saved.shown.concentration, untold);
        measure.setSigma(saved.shown.sigma, untold);
        const int decision = saved.shown.decision;
        measure.setDecision(decision == Positive || decision == Negative ? decision : NotDetermined, untold);
        measure.setLocalisation(saved.shown.localisation, untold);
        measure.setDegradation(saved.shown.degradation, untold);
        measure.setConservation(saved.shown.conservation, untold);
        ret.rows.push_back(measure);
    }
    return ret;
}

} // namespace

void Model::applyFile(const Event &e)
{
    switch (e.kind) {
    case Kind::InitFile:
        return initFile();
    case Kind::SaveFile:
        return saveFile();
    case Kind::LoadFile:
        return loadFile(pathOf(e.text));
    case Kind::RemoveFile:
        m_saved.erase(pathOf(e.text));
        return;
    default: // the measurement directories hold nothing that anybody reads
        return;
    }
}

std::string Model::pathOf(const std::string &name) const
{
    return (m_state.otherHome ? "other/files/" : "files/") + name + ".xml";
}

void Model::initFile()
{
    set(m_state.fileName, std::string(), "fileNameChanged ");
    set(m_state.localization, std::string(), "localizationChanged ");
    m_state.coulures = m_state.effondrement = m_state.humidite = false;
    tell("couluresChanged false");
    tell("effondrementChanged false");
    tell("humiditeChanged false");
    setAccuracyStage(Init);
    for (const Stage stage : {Init, Interrupt, Final})
        m_accuracies[stage].reset(m_out);
    if (!m_units.empty())
        removeUnits(0, m_units.size() - 1);
}

void Model::saveFile()
{
    if (m_state.fileName.empty())
        return;
    const std::string path = pathOf(m_state.fileName);
    tell("file " + path);
    m_saved[path] = {m_state.fileName, m_state.localization, {m_accuracies.begin(), m_accuracies.end()},
                     m_units,          m_state.effondrement, m_state.coulures,
                     m_state.humidite};
}

void Model::loadFile(const std::string &path)
{
    const auto found = m_saved.find(path);
    if (found == m_saved.end())
        return;
    const Document &document = found->second;
    set(m_state.fileName, document.name, "fileNameChanged " + document.name);
    set(m_state.localization, document.place, "localizationChanged " + document.place);
    loadAccuracies(document);
    loadUnits(document);
    m_state.effondrement = document.effondrement;
    tell(std::string("effondrementChanged ") + (document.effondrement ? "true" : "false"));
    m_state.coulures = document.coulures;
    tell(std::string("couluresChanged ") + (document.coulures ? "true" : "false"));
    m_state.humidite = document.humidite;
    tell(std::string("humiditeChanged ") + (document.humidite ? "true" : "false"));
}

void Model::loadAccuracies(const Document &document)
{
    // An uncalibrated first check brings all three into the file, whatever the others hold.
    const bool all = document.accuracies[Init].shown.decision == Uncalibrated;
    for (const Stage stage : {Init, Interrupt, Final}) {
        const MeasureModel &saved = document.accuracies[stage];
        if (!all && !isChecked(saved))
            continue;
        m_accuracies[stage].setId(saved.shown.id, m_out);
        const bool known = isChecked(saved) || saved.shown.decision == Uncalibrated;
        m_accuracies[stage].setDecision(known ? saved.shown.decision : int(NotDetermined), m_out);
        setAccuracyStage(stage == Init ? Interrupt : Final);
    }
}

void Model::loadUnits(const Document &document)
{
    for (const UnitModel &saved : document.units) {
        if (saved.gone)
            continue;
        UnitModel unit;
        unit.shown = saved.shown;
        unit.shown.name = "unit " + std::to_string(++m_lastUnit);
        unit.shown.decision = NotDetermined; // not in the file
        unit.measures = reloaded(saved.measures, unit.shown.name, m_lastMeasure);
        m_units.push_back(unit);
        tellInserted("units", unit.shown.name, m_units.size() - 1, m_units.size(), m_out);
    }
}

} // namespace orders
