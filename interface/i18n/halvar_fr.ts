<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr" sourcelanguage="fr">
<context>
    <name>DiagnosticScreen</name>
    <message numerus="yes">
        <source>%n unité(s)</source>
        <translation>
            <numerusform>%n unité</numerusform>
            <numerusform>%n unités</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DiagnosticsScreen</name>
    <message numerus="yes">
        <source>%n unité(s)</source>
        <translation>
            <numerusform>%n unité</numerusform>
            <numerusform>%n unités</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>HoldOffScreen</name>
    <message numerus="yes">
        <source>%n seconde(s)</source>
        <translation>
            <numerusform>%n seconde</numerusform>
            <numerusform>%n secondes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>PinScreen</name>
    <message numerus="yes">
        <source>%n chiffre(s) sur cinq</source>
        <translation>
            <numerusform>%n chiffre sur cinq</numerusform>
            <numerusform>%n chiffres sur cinq</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>RoomsScreen</name>
    <message numerus="yes">
        <source>%n unité(s)</source>
        <translation>
            <numerusform>%n unité</numerusform>
            <numerusform>%n unités</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>ServiceScreen</name>
    <message numerus="yes">
        <source>%n diagnostic(s) n&apos;ont pas pu être effacés.</source>
        <translation>
            <numerusform>%n diagnostic n&apos;a pas pu être effacé.</numerusform>
            <numerusform>%n diagnostics n&apos;ont pas pu être effacés.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n mois</source>
        <translation>
            <numerusform>%n mois</numerusform>
            <numerusform>%n mois</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StatusBar</name>
    <message numerus="yes">
        <source>Source périmée depuis %n jour(s)</source>
        <translation>
            <numerusform>Source périmée depuis %n jour</numerusform>
            <numerusform>Source périmée depuis %n jours</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>UnitScreen</name>
    <message numerus="yes">
        <source>%n mesure(s), la dernière en bas</source>
        <translation>
            <numerusform>%n mesure</numerusform>
            <numerusform>%n mesures, la dernière en bas</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>il manque %n négative(s)</source>
        <translation>
            <numerusform>il manque %n négative</numerusform>
            <numerusform>il manque %n négatives</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>UnitsScreen</name>
    <message numerus="yes">
        <source>%n unité(s)</source>
        <translation>
            <numerusform>%n unité</numerusform>
            <numerusform>%n unités</numerusform>
        </translation>
    </message>
</context>
</TS>
