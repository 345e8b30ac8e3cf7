// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "modelmeasure.h"

#include <algorithm>

namespace orders {

namespace {

template <typename T>
bool change(T &member, const T &value)
{
    if (member == value)
        return false;
    member = value;
    return true;
}

template <typename T>
void push(std::array<T, 4> &history, T newest)
{
    history = {newest, history[0], history[1], history[2]};
}

} // namespace

void tellInserted(const std::string &list, const std::string &item, std::size_t row, std::size_t count,
                  Effects &out)
{
    out.push_back(list + ": " + item + " inserted at " + std::to_string(row));
    out.push_back(list + ": count " + std::to_string(count));
}

void tellRemoved(const std::string &list, std::size_t first, std::size_t last, std::size_t count,
                 Effects &out)
{
    out.push_back(list + ": rows " + std::to_string(first) + " to " + std::to_string(last) + " removed");
    out.push_back(list + ": count " + std::to_string(count));
}

void MeasureModel::setConcentration(double value, Effects &out)
{
    if (change(shown.concentration, value))
        out.push_back(shown.name + " concentration " + text(value));
    ++received;
    push(concentrations, value);
}

void MeasureModel::setSigma(double value, Effects &out)
{
    if (change(shown.sigma, value))
        out.push_back(shown.name + " sigma " + text(value));
    push(sigmas, value);
}

void MeasureModel::setDecision(int value, Effects &out)
{
    if (change(shown.decision, value))
        out.push_back(shown.name + " decision " + std::to_string(value));
    push(decisions, value);
}

void MeasureModel::setLocalisation(int value, Effects &out)
{
    if (change(shown.localisation, value))
        out.push_back(shown.name + " localisation " + std::to_string(value));
}

void MeasureModel::setDegradation(int value, Effects &out)
{
    if (change(shown.degradation, value))
        out.push_back(shown.name + " degradation");
}

void MeasureModel::setConservation(const std::string &value, Effects &out)
{
    // Told as a change of the degradation.
    if (change(shown.conservation, value))
        out.push_back(shown.name + " degradation");
}

void MeasureModel::setId(int value, Effects &out)
{
    if (change(shown.id, value))
        out.push_back(shown.name + " id " + std::to_string(value));
}

void MeasureModel::take(const Shot &shot, Effects &out)
{
    if (!shot.decided)
        return;
    setConcentration(shot.value, out);
    setSigma(shot.sigma, out);
    setDecision(shot.decision, out);
}

void MeasureModel::settle(Effects &out)
{
    if (received <= 3)
        return;
    setConcentration(concentrations[3], out);
    setSigma(sigmas[3], out);
    setDecision(decisions[3], out);
}

void MeasureModel::reset(Effects &out)
{
    setConcentration(0, out);
    setSigma(0, out);
    setDecision(NotDetermined, out);
    setLocalisation(5, out);
    setDegradation(0, out);
    setConservation({}, out);
    setId(-1, out);
}

MeasureModel *MeasuresModel::at(int row)
{
    if (row < 0 || row >= int(rows.size()) || rows[std::size_t(row)].gone)
        return nullptr;
    return &rows[std::size_t(row)];
}

MeasureModel *MeasuresModel::newest(bool front)
{
    return at(front ? 0 : int(rows.size()) - 1);
}

void MeasuresModel::take(const Shot &shot, bool front, int &lastNumber, Effects &out)
{
    MeasureModel *const current = newest(front);
    if (shot.decided && current) {
        current->take(shot, out);
        return;
    }
    // The result that opens a shot is not its first value.
    const auto row = front ? rows.begin() : rows.end();
    const auto inserted = rows.insert(row, MeasureModel("measure " + std::to_string(++lastNumber)));
    tellInserted(name, inserted->shown.name, std::size_t(inserted - rows.begin()), rows.size(), out);
}

void MeasuresModel::remove(int row, Effects &out)
{
    if (row < 0 || row >= int(rows.size()))
        return;
    rows.erase(rows.begin() + row);
    tellRemoved(name, std::size_t(row), std::size_t(row), rows.size(), out);
}

void MeasuresModel::clear(Effects &out)
{
    if (rows.empty())
        return;
    const std::size_t last = rows.size() - 1;
    rows.clear();
    tellRemoved(name, 0, last, 0, out);
}

std::vector<MeasureState> MeasuresModel::shown() const
{
    std::vector<MeasureState> ret;
    for (const MeasureModel &measure : rows) {
        ret.push_back(measure.gone ? MeasureState() : measure.shown);
        if (measure.gone)
            ret.back().name = "gone";
    }
    return ret;
}

void UnitModel::setStatut(int value, Effects &out)
{
    if (change(shown.statut, value))
        out.push_back(shown.name + " statut " + std::to_string(value));
}

void UnitModel::setDecision(int value, Effects &out)
{
    if (change(shown.decision, value))
        out.push_back(shown.name + " decision " + std::to_string(value));
}

void UnitModel::setObservation(const std::string &value, Effects &out)
{
    if (change(shown.observation, value))
        out.push_back(shown.name + " observation " + value);
}

void UnitModel::setLocal(const std::string &value, Effects &out)
{
    if (change(shown.local, value))
        out.push_back(shown.name + " local " + value);
}

void UnitModel::updateStatut(int wanted, Effects &out)
{
    // What the user marked as not measured stays so.
    if (shown.statut == Skipped)
        return;
    int negatives = 0;
    for (const MeasureModel &measure : measures.rows) {
        if (measure.gone)
            continue;
        if (measure.shown.decision == Negative)
            ++negatives;
        const bool positive = measure.shown.decision == Positive;
        if (positive || (measure.shown.decision == Negative && negatives >= wanted)) {
            setDecision(positive ? Positive : Negative, out);
            setStatut(positive ? StatutPositive : StatutNegative, out);
            return;
        }
    }
}

UnitState UnitModel::state() const
{
    UnitState ret;
    if (gone) {
        ret.name = "gone";
        return ret;
    }
    ret = shown;
    ret.measures = measures.shown();
    return ret;
}

} // namespace orders
