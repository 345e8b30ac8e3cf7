// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
pragma Singleton
import QtQuick 2.15
import Halvar 4.0
import HalvarStyle 1.0

// The operator's words, signs and colours for what the library says in enumerations.
QtObject {
    // mg/cm²: from here on a coating counts as positive. The analysis service decides; the line in the drawing shows
    // what it compares with.
    readonly property real threshold: 1

    function number(value, decimals) {
        // With the sign for minus: a hyphen is lost beside large digits.
        return Number(value).toLocaleString(Qt.locale(qsTr("fr_FR", "locale of numbers")), "f", decimals)
            .replace("-", "\u2212");
    }
    function concentration(value) { return number(value, 2); }

    function decision(value) {
        switch (value) {
        case DetectionDecisionEnumClass.POSITIVE: return qsTr("Positive");
        case DetectionDecisionEnumClass.NEGATIVE: return qsTr("Négative");
        case DetectionDecisionEnumClass.NOT_DETERMINED: return qsTr("Indéterminée");
        case DetectionDecisionEnumClass.INSUFFICIENT_ACQTIME: return qsTr("Mesure trop courte");
        case DetectionDecisionEnumClass.COMPTON_ERROR: return qsTr("Trop loin de la surface");
        case DetectionDecisionEnumClass.ACCURACY_OK: return qsTr("Confirmée");
        case DetectionDecisionEnumClass.ACCURACY_ERROR: return qsTr("Non confirmée");
        case DetectionDecisionEnumClass.UNCALIBRATED: return qsTr("Calibrage à faire");
        default: return qsTr("Pas de décision");
        }
    }
    // A result that says why there is no decision.
    function isFailure(value) {
        return value === DetectionDecisionEnumClass.INSUFFICIENT_ACQTIME || value === DetectionDecisionEnumClass.COMPTON_ERROR
            || value === DetectionDecisionEnumClass.UNCALIBRATED;
    }
    // Names of Icon.
    function decisionSign(value) {
        switch (value) {
        case DetectionDecisionEnumClass.POSITIVE: return "plus";
        case DetectionDecisionEnumClass.NEGATIVE: return "minus";
        case DetectionDecisionEnumClass.ACCURACY_OK: return "check";
        case DetectionDecisionEnumClass.ACCURACY_ERROR: return "cross";
        case DetectionDecisionEnumClass.NOT_DETERMINED:
        case DetectionDecisionEnumClass.NO_DECISION: return "question";
        default: return "warning";
        }
    }
    function decisionColor(value) {
        switch (value) {
        case DetectionDecisionEnumClass.POSITIVE:
        case DetectionDecisionEnumClass.ACCURACY_ERROR: return Theme.positive;
        case DetectionDecisionEnumClass.NEGATIVE:
        case DetectionDecisionEnumClass.ACCURACY_OK: return Theme.negative;
        case DetectionDecisionEnumClass.NOT_DETERMINED:
        case DetectionDecisionEnumClass.NO_DECISION: return Theme.neutral;
        default: return Theme.undecided;
        }
    }

    function statut(value) {
        switch (value) {
        case UDStatutEnumClass.POSITIVE: return qsTr("Positive");
        case UDStatutEnumClass.NEGATIVE: return qsTr("Négative");
        case UDStatutEnumClass.SKIPPED: return qsTr("Non mesurée");
        default: return qsTr("À mesurer");
        }
    }
    function statutSign(value) {
        switch (value) {
        case UDStatutEnumClass.POSITIVE: return "plus";
        case UDStatutEnumClass.NEGATIVE: return "minus";
        case UDStatutEnumClass.SKIPPED: return "skip";
        default: return "target";
        }
    }
    function statutColor(value) {
        switch (value) {
        case UDStatutEnumClass.POSITIVE: return Theme.positive;
        case UDStatutEnumClass.NEGATIVE: return Theme.negative;
        case UDStatutEnumClass.SKIPPED: return Theme.undecided;
        default: return Theme.neutral;
        }
    }

    function localisation(value) {
        switch (value) {
        case LocalisationEnumClass.LEFT: return qsTr("Gauche");
        case LocalisationEnumClass.UP: return qsTr("Haut");
        case LocalisationEnumClass.CENTER: return qsTr("Centre");
        case LocalisationEnumClass.DOWN: return qsTr("Bas");
        case LocalisationEnumClass.RIGHT: return qsTr("Droite");
        default: return qsTr("Position non précisée");
        }
    }
    function degradation(value) {
        switch (value) {
        case DegradationStateEnumClass.NON_VISIBLE: return qsTr("Non visible");
        case DegradationStateEnumClass.ETAT_USAGE: return qsTr("État d'usage");
        case DegradationStateEnumClass.DEGRADE: return qsTr("Dégradé");
        default: return qsTr("Non dégradé");
        }
    }

    function measureMode(value) {
        switch (value) {
        case MeasureModeEnumClass.TRIGGER: return qsTr("À la détente");
        case MeasureModeEnumClass.DEFINED: return qsTr("Durée fixe");
        default: return qsTr("Automatique");
        }
    }

    function accuracyStage(value) {
        switch (value) {
        case AccuracyStageEnumClass.ACCURACY_LIVE: return qsTr("Libre");
        case AccuracyStageEnumClass.ACCURACY_INIT: return qsTr("Début");
        case AccuracyStageEnumClass.ACCURACY_INTERRUPT: return qsTr("Reprise");
        default: return qsTr("Fin");
        }
    }

    function battery(level) {
        switch (level) {
        case BatteryLevelsEnumClass.LEVEL_CRITICAL: return qsTr("Vide");
        case BatteryLevelsEnumClass.LEVEL_VERY_LOW: return qsTr("Très faible");
        case BatteryLevelsEnumClass.LEVEL_LOW: return qsTr("Faible");
        case BatteryLevelsEnumClass.LEVEL_GOOD: return qsTr("Bonne");
        case BatteryLevelsEnumClass.LEVEL_FULL: return qsTr("Pleine");
        default: return qsTr("Inconnue");
        }
    }
    // Quarters of the drawn battery.
    function batteryQuarters(level) {
        switch (level) {
        case BatteryLevelsEnumClass.LEVEL_VERY_LOW: return 1;
        case BatteryLevelsEnumClass.LEVEL_LOW: return 2;
        case BatteryLevelsEnumClass.LEVEL_GOOD: return 3;
        case BatteryLevelsEnumClass.LEVEL_FULL: return 4;
        default: return 0;
        }
    }

    // A unit's zone: the library keeps a character.
    function zone(value) { return typeof value === "number" ? String.fromCharCode(value) : String(value); }

    function unitTitle(zoneValue, element) {
        return qsTr("Zone %1 · %2").arg(zone(zoneValue)).arg(element === "" ? qsTr("élément à choisir") : element);
    }

    // For searching as people type: without case and accents.
    function plain(text) {
        return String(text).normalize("NFD").replace(/[\u0300-\u036f]/g, "").toLowerCase().replace(/œ/g, "oe");
    }

    function size(bytes) {
        if (bytes < 0)
            return qsTr("inconnue");
        if (bytes < 1e6)
            return qsTr("%1 ko").arg(number(Math.max(1, bytes / 1e3), 0));
        if (bytes < 1e9)
            return qsTr("%1 Mo").arg(number(bytes / 1e6, 0));
        return qsTr("%1 Go").arg(number(bytes / 1e9, 1));
    }

    // Why a diagnostic cannot have this name; empty when it can. The file system allows 255 bytes, four of them for
    // the suffix.
    function refusalOfName(name) {
        if (name.trim() === "")
            return qsTr("Donnez un nom au diagnostic.");
        if (name.indexOf("/") >= 0)
            return qsTr("Le nom ne peut pas contenir « / ».");
        if (name.charAt(0) === ".")
            return qsTr("Le nom ne peut pas commencer par un point.");
        var bytes = 0;
        for (var i = 0; i < name.length; ++i) {
            var code = name.charCodeAt(i);
            // Half of a character outside the basic plane is two of its four bytes.
            bytes += code < 0x80 ? 1 : code < 0x800 || (code >= 0xd800 && code < 0xe000) ? 2 : 3;
        }
        return bytes > 251 ? qsTr("Le nom est trop long.") : "";
    }
}
