// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
import QtQuick 2.15
import HalvarComponents 1.0
import HalvarStyle 1.0

Item {
    id: stage
    width: 480
    height: 800

    Component { id: banners; Banners { width: stage.width } }

    ComponentTest {
        name: "Banners"

        function test_nothingWrong_takesNoRoom() {
            var column = createTemporaryObject(banners, stage);
            compare(column.implicitHeight, 0);
        }
        function test_error_isShownUntilAcknowledged() {
            var column = createTemporaryObject(banners, stage);
            bench.setError("Anomalie DAC - Erreur S4");
            var banner = named(column, "errorBanner");
            verify(says(banner, "Anomalie DAC - Erreur S4"));
            compare(banner.Accessible.name.indexOf("Anomalie DAC - Erreur S4"), 0);
            verify(says(banner, "(erreur n° 1)"));
            compare(bench.complaints(column).join("\n"), "");
            mouseClick(named(banner, "bannerButton"));
            compare(error.errorMessage, "");
            compare(named(column, "errorBanner"), null);
        }
        function test_shock_isShownWithItsMomentUntilSeen() {
            var column = createTemporaryObject(banners, stage);
            bench.setShock(true);
            var banner = named(column, "shockBanner");
            verify(says(banner, error.lastShock));
            mouseClick(named(banner, "bannerButton"));
            verify(!error.shock);
            compare(named(column, "shockBanner"), null);
        }
        function test_longError_isWrappedWhole() {
            var column = createTemporaryObject(banners, stage);
            bench.setError("Anomalie obturateur ".repeat(25));
            waitForRendering(column);
            compare(bench.complaints(column).join("\n"), "");
        }
    }
}
