// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import Halvar 4.0
import HalvarComponents 1.0
import HalvarStyle 1.0

Item {
    id: stage
    width: 480
    height: 800

    Component { id: measureBar; MeasureBar { width: 400 } }
    Component { id: barScale; BarScale { list: directMeasures } }
    Component { id: measureFace; MeasureFace { width: 400 } }

    ComponentTest {
        name: "MeasureBar"

        // The bar up to the value, by its colour; its length in mg/cm².
        function lengthOf(bar) {
            var drawn = itemsOf(bar).filter(function(item) { return String(item.color) === String(bar.tint); });
            compare(drawn.length, 1);
            return drawn[0].width / bar.unit;
        }
        function test_bar_endsAtTheConcentration_data() {
            return [{ tag: "below the threshold", concentration: 0.4, sigma: 0.1 },
                    { tag: "at it", concentration: 1.0, sigma: 0.2 },
                    { tag: "above", concentration: 3.2, sigma: 0.3 },
                    { tag: "far above", concentration: 42.5, sigma: 1.1 }];
        }
        function test_bar_endsAtTheConcentration(data) {
            var bar = createTemporaryObject(measureBar, stage,
                { concentration: data.concentration, sigma: data.sigma, tint: "#123456" });
            fuzzyCompare(lengthOf(bar), data.concentration, 0.01 * bar.full);
            // Value and bracket are inside.
            verify(data.concentration + data.sigma <= bar.full);
            verify(says(bar, "seuil 1,0"));
            compare(bar.Accessible.name.indexOf(Words.concentration(data.concentration)), 0);
        }
        function test_negativeConcentration_drawsNoBar() {
            var bar = createTemporaryObject(measureBar, stage, { concentration: -0.5, sigma: 0.1, tint: "#123456" });
            compare(lengthOf(bar), 0);
        }
        function test_threshold_keepsItsPlaceAsLongAsTheValueIsSmall() {
            var bar = createTemporaryObject(measureBar, stage, { concentration: 0.1, sigma: 0.1 });
            compare(bar.threshold / bar.full, 0.4);
            bar.concentration = 1.4;
            compare(bar.threshold / bar.full, 0.4);
            bar.concentration = 8;
            verify(bar.threshold / bar.full < 0.2);
        }
        function test_scale_isTheLargestThatAMeasureOfTheListNeeds() {
            var scale = createTemporaryObject(barScale, stage);
            compare(scale.full, 0);
            bench.conditions(true, 21, 1200);
            Instrument.setMeasureMode(MeasureModeEnumClass.DEFINED);
            Instrument.measureDirect();
            [3.2, 0.2].forEach(function(concentration) {
                bench.openShutter();
                bench.startMeasure();
                bench.tellFirst();
                bench.tellResult(concentration, 0.4, DetectionDecisionEnumClass.NOT_DETERMINED);
                bench.tellEnd();
                fuzzyCompare(scale.full, 3.8, 1e-9);
            });
            compare(directMeasures.count, 2);
            // Bars of both have the same length for the same value.
            var low = createTemporaryObject(measureBar, stage, { concentration: 0.2, sigma: 0.4, atLeast: scale.full });
            var high = createTemporaryObject(measureBar, stage, { concentration: 3.2, sigma: 0.4, atLeast: scale.full });
            compare(low.full, high.full);
            directMeasures.clear();
            compare(scale.full, 0);
            Instrument.standby();
        }
        function test_scale_isOneForAllWhileAMeasureRuns() {
            var scale = createTemporaryObject(barScale, stage);
            bench.conditions(true, 21, 1200);
            Instrument.setMeasureMode(MeasureModeEnumClass.TRIGGER);
            Instrument.measureDirect();
            bench.openShutter();
            bench.startMeasure();
            bench.tellFirst();
            bench.tellResult(0.4, 0.2, DetectionDecisionEnumClass.NOT_DETERMINED);
            tryVerify(function() { return Math.abs(scale.full - 0.7) < 1e-9; });
            bench.tellResult(2.4, 1.4, DetectionDecisionEnumClass.NOT_DETERMINED);
            tryVerify(function() { return Math.abs(scale.full - 4.5) < 1e-9; });
            // It stays until the measure is over.
            bench.tellResult(1.4, 0.4, DetectionDecisionEnumClass.NOT_DETERMINED);
            wait(0);
            fuzzyCompare(scale.full, 4.5, 1e-9);
            bench.tellEnd();
            verify(scale.full < 4.5);
            Instrument.standby();
        }
        function test_bracket_hidesNeitherBarNorLine() {
            var bar = createTemporaryObject(measureBar, stage,
                { threshold: 1.04, precision: 0.15, concentration: 1.03, sigma: 0.09, tint: "#123456" });
            var bracket = named(bar, "bracket");
            [named(bar, "thresholdLine"), named(bar, "thresholdRim")].concat(
                itemsOf(bar).filter(function(item) { return String(item.color) === "#123456"; })).forEach(function(item) {
                verify(item.y + item.height <= bracket.y);
            });
            fuzzyCompare(bracket.x, 0.94 * bar.unit, 1);
            fuzzyCompare(bracket.x + bracket.width, 1.12 * bar.unit, 1);
            verify(named(bar, "lowerEnd") && named(bar, "upperEnd"));
            // Nor does it stand on the words below.
            verify(named(bar, "legend").y >= bracket.y + bracket.height + 2);
        }
        function test_bracketThatReachesBelowZero_hasNoEndThere() {
            var bar = createTemporaryObject(measureBar, stage, { concentration: 0.04, sigma: 0.19 });
            compare(named(bar, "bracket").x, 0);
            verify(!named(bar, "lowerEnd"));
            verify(named(bar, "upperEnd"));
            bar.concentration = -0.5;
            verify(!named(bar, "bracket"));
        }
        function test_reference_isNamedWithItsPrecision() {
            var bar = createTemporaryObject(measureBar, stage, { threshold: 1.04, precision: 0.15 });
            verify(says(bar, "référence 1,04 ± 0,15"));
        }
        function test_band_isSeenThroughTheBar() {
            var bar = createTemporaryObject(measureBar, stage,
                { threshold: 1.04, precision: 0.15, concentration: 1.9, tint: "#123456" });
            var fill = itemsOf(bar).filter(function(item) { return String(item.color) === "#123456"; })[0];
            var edges = itemsOf(bar).filter(function(item) { return item.objectName === "bandEdge"; });
            compare(edges.length, 2);
            [0.89, 1.19].forEach(function(value, i) {
                fuzzyCompare(edges[i].x + 1.5, value * bar.unit, 1);
                verify(itemsOf(bar).indexOf(edges[i]) > itemsOf(bar).indexOf(fill));
            });
            bar.precision = 0;
            verify(!named(bar, "bandEdge"));
        }
        function test_face_tellsValueSignAndWord_data() {
            return [{ tag: "positive", decision: DetectionDecisionEnumClass.POSITIVE, word: "Positive", sign: "plus" },
                    { tag: "negative", decision: DetectionDecisionEnumClass.NEGATIVE, word: "Négative", sign: "minus" },
                    { tag: "open", decision: DetectionDecisionEnumClass.NOT_DETERMINED, word: "Indéterminée", sign: "question" },
                    { tag: "too far", decision: DetectionDecisionEnumClass.COMPTON_ERROR, word: "Trop loin de la surface", sign: "warning" }];
        }
        function test_face_tellsValueSignAndWord(data) {
            var face = createTemporaryObject(measureFace, stage,
                { heading: "Mesure 3", concentration: 1.234, sigma: 0.2, decision: data.decision });
            verify(says(face, "1,23"));
            verify(says(face, "± 0,20 mg/cm²"));
            verify(says(face, data.word));
            verify(itemsOf(face).some(function(item) { return item.name === data.sign; }));
            verify(face.Accessible.name.indexOf(data.word) > 0);
            compare(bench.complaints(face).join("\n"), "");
        }
        function test_faceWithoutAResult_showsNoZero() {
            var face = createTemporaryObject(measureFace, stage, { heading: "Mesure 1", live: true });
            verify(!says(face, "0,00"));
            verify(!says(face, Words.decision(face.decision)));
            face.concentration = 0.31;
            face.sigma = 0.2;
            verify(says(face, "0,31"));
            verify(says(face, Words.decision(face.decision)));
        }
        function test_decisionOfAMeasureThatRuns_isProvisional() {
            var face = createTemporaryObject(measureFace, stage,
                { heading: "Mesure 1", concentration: 1.3, sigma: 0.3, decision: DetectionDecisionEnumClass.POSITIVE, live: true });
            var chip = itemsOf(face).filter(function(item) { return item.word !== undefined; })[0];
            verify(chip.provisional);
            compareColors(chip.color, Theme.surface);
            face.live = false;
            verify(!chip.provisional);
            compareColors(chip.color, Theme.positive);
        }
        function test_interruptedMeasure_hasNoDecision() {
            var face = createTemporaryObject(measureFace, stage,
                { heading: "Mesure 1", decision: DetectionDecisionEnumClass.POSITIVE, interrupted: true });
            verify(says(face, "Interrompue"));
            verify(!says(face, "Positive"));
            verify(!says(face, "0,00"));
            face.concentration = 0.64;
            face.sigma = 0.38;
            verify(says(face, "0,64"));
            verify(says(face, "Interrompue"));
            // Nor does the value look like one.
            verify(says(face, "± 0,38 mg/cm² · pas un résultat"));
            var value = itemsOf(face).filter(function(item) { return item.text === "0,64"; })[0];
            verify(value.font.strikeout);
            compareColors(value.color, Theme.textSecondary);
            verify(!named(face, "bracket"));
            waitForRendering(face);
            compare(bench.complaints(face).join("\n"), "");
            verify(face.Accessible.name.indexOf("Interrompue") > 0);
        }
    }
}
