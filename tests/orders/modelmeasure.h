// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef ORDERS_MODELMEASURE_H
#define ORDERS_MODELMEASURE_H

#include <array>

#include "state.h"

namespace orders {

enum Decision {
    Positive,
    Negative,
    NotDetermined
};
enum Statut {
    Raw,
    StatutPositive,
    StatutNegative,
    Skipped
};

/// A result as the service sends it.
struct Shot
{
    bool decided = false;
    int decision = 0;
    double value = 0;
    double sigma = 0;
};

/// One shot: what is shown, and the last four values of each kind, newest first.
struct MeasureModel
{
    explicit MeasureModel(const std::string &name) { shown.name = name; }

    void setConcentration(double value, Effects &out);
    void setSigma(double value, Effects &out);
    void setDecision(int value, Effects &out);
    void setLocalisation(int value, Effects &out);
    void setDegradation(int value, Effects &out);
    void setConservation(const std::string &value, Effects &out);
    void setId(int value, Effects &out);
    void take(const Shot &shot, Effects &out);
    /// The result received three before the newest is the one that counts.
    void settle(Effects &out);
    void reset(Effects &out);

    MeasureState shown;
    bool gone = false; ///< somebody else deleted it: its row is left, with nothing in it
    int received = 0;
    std::array<double, 4> concentrations{};
    std::array<double, 4> sigmas{};
    std::array<int, 4> decisions{};
};

/// The measures of one list; \p name is what the list is called in the effects.
struct MeasuresModel
{
    /// \p front: the newest measure is the first row, else the last.
    void take(const Shot &shot, bool front, int &lastNumber, Effects &out);
    /// Null without one.
    MeasureModel *newest(bool front);
    MeasureModel *at(int row);
    void remove(int row, Effects &out);
    void clear(Effects &out);
    std::vector<MeasureState> shown() const;

    std::string name;
    std::vector<MeasureModel> rows;
};

struct UnitModel
{
    void setStatut(int value, Effects &out);
    void setDecision(int value, Effects &out);
    void setObservation(const std::string &value, Effects &out);
    void setLocal(const std::string &value, Effects &out);
    /// Derives statut and decision; \p wanted negatives make it negative.
    void updateStatut(int wanted, Effects &out);
    UnitState state() const;

    UnitState shown; ///< without its measures
    bool gone = false; ///< as a measure's
    MeasuresModel measures;
};

/// What a list tells when its rows change.
void tellInserted(const std::string &list, const std::string &item, std::size_t row, std::size_t count,
                  Effects &out);
void tellRemoved(const std::string &list, std::size_t first, std::size_t last, std::size_t count,
                 Effects &out);

} // namespace orders

#endif // ORDERS_MODELMEASURE_H
