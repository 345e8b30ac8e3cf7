// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarComponents 1.0

Item {
    id: stage
    width: 480
    height: 800

    Component { id: fact; Fact { width: 400 } }

    ComponentTest {
        name: "Facts"

        function test_words_takeOneLineAsLongAsTheyFit_data() {
            return [
                { tag: "short value", name: "Mesures négatives demandées", value: "3" },
                { tag: "long value", name: "Répertoire", value: "/data/lambrik/une-autre-place/" }
            ];
        }
        function test_words_takeOneLineAsLongAsTheyFit(data) {
            var item = createTemporaryObject(fact, stage, { name: data.name, value: data.value });
            waitForRendering(item);
            var texts = itemsOf(item).filter(function(child) { return child.text !== undefined; });
            compare(texts.length, 2);
            compare(Math.max(texts[0].lineCount, texts[1].lineCount), 1);
            compare(bench.complaints(item).join("\n"), "");
        }
        function test_longWords_leaveEachHalfOfTheLine() {
            var item = createTemporaryObject(fact, stage, { name: "Nom ".repeat(60), value: "W".repeat(300) });
            waitForRendering(item);
            var texts = itemsOf(item).filter(function(child) { return child.text !== undefined; });
            verify(Math.min(texts[0].width, texts[1].width) > 180);
            compare(bench.complaints(item).join("\n"), "");
        }
    }
}
