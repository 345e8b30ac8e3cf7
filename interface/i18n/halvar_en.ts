<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="fr">
<context>
    <name>AccuracyScreen</name>
    <message>
        <source>Contrôle de justesse</source>
        <translation>Accuracy check</translation>
    </message>
    <message>
        <source>Bloc de référence&#xa0;: %1 ± %2 mg/cm²</source>
        <translation>Reference block: %1 ± %2 mg/cm²</translation>
    </message>
    <message>
        <source>Contrôle arrêté, sans résultat.</source>
        <translation>Check stopped, without a result.</translation>
    </message>
    <message>
        <source>Contrôle en cours</source>
        <translation>Check running</translation>
    </message>
    <message>
        <source>Arrêter le contrôle de justesse et quitter cet écran&#xa0;?</source>
        <translation>Stop the accuracy check and leave this screen?</translation>
    </message>
    <message>
        <source>Arrêter et quitter</source>
        <translation>Stop and leave</translation>
    </message>
    <message>
        <source>Continuer le contrôle</source>
        <translation>Go on with the check</translation>
    </message>
    <message>
        <source>%1 ± %2</source>
        <translation>%1 ± %2</translation>
    </message>
    <message>
        <source>Contrôle en cours&#xa0;: %1 s. Laissez l&apos;appareil sur le bloc de référence.</source>
        <translation>Check running: %1 s. Leave the instrument on the reference block.</translation>
    </message>
    <message>
        <source>Posez l&apos;appareil sur le bloc de référence, puis démarrez.</source>
        <translation>Put the instrument on the reference block, then start.</translation>
    </message>
    <message>
        <source>Démarrer le contrôle</source>
        <translation>Start the check</translation>
    </message>
    <message>
        <source>Arrêter</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Quel contrôle&#xa0;?</source>
        <translation>Which check?</translation>
    </message>
    <message>
        <source>hors diagnostic</source>
        <translation>not part of the diagnostic</translation>
    </message>
    <message>
        <source>pas encore fait</source>
        <translation>not made yet</translation>
    </message>
    <message>
        <source>Justesse&#xa0;: %1</source>
        <translation>Accuracy: %1</translation>
    </message>
    <message>
        <source>ouvrez d&apos;abord un diagnostic</source>
        <translation>open a diagnostic first</translation>
    </message>
    <message>
        <source>tir n° %1</source>
        <translation>shot no. %1</translation>
    </message>
    <message>
        <source>Refaire le contrôle</source>
        <translation>Repeat the check</translation>
    </message>
    <message>
        <source>Calibrez l&apos;instrument, puis refaites le contrôle.</source>
        <translation>Calibrate the instrument, then repeat the check.</translation>
    </message>
    <message>
        <source>mg/cm²</source>
        <translation>mg/cm²</translation>
    </message>
    <message>
        <source>Posez l&apos;appareil sur le bloc de référence pour refaire le contrôle.</source>
        <translation>Put the instrument on the reference block to repeat the check.</translation>
    </message>
    <message>
        <source>Calibrer l&apos;instrument</source>
        <translation>Calibrate the instrument</translation>
    </message>
</context>
<context>
    <name>Banners</name>
    <message>
        <source>Acquitter</source>
        <translation>Acknowledge</translation>
    </message>
    <message>
        <source>Choc détecté</source>
        <translation>Shock detected</translation>
    </message>
    <message>
        <source>Vu</source>
        <translation>Seen</translation>
    </message>
    <message>
        <source>Notez ce texte pour le service (erreur n°&#xa0;%1).</source>
        <translation>Note this text for the service (error no.&#xa0;%1).</translation>
    </message>
</context>
<context>
    <name>CalibrationScreen</name>
    <message>
        <source>Calibrage en cours</source>
        <translation>Calibration running</translation>
    </message>
    <message>
        <source>Trop d&apos;échecs&#xa0;: appelez le service</source>
        <translation>Too many failures: call the service</translation>
    </message>
    <message>
        <source>Calibrage arrêté</source>
        <translation>Calibration stopped</translation>
    </message>
    <message>
        <source>Calibrage réussi</source>
        <translation>Calibration succeeded</translation>
    </message>
    <message>
        <source>Pas de calibrage depuis l&apos;allumage</source>
        <translation>No calibration since start-up</translation>
    </message>
    <message>
        <source>Calibrage</source>
        <translation>Calibration</translation>
    </message>
    <message>
        <source>Arrêter le calibrage et quitter cet écran&#xa0;?</source>
        <translation>Stop the calibration and leave this screen?</translation>
    </message>
    <message>
        <source>Arrêter et quitter</source>
        <translation>Stop and leave</translation>
    </message>
    <message>
        <source>Continuer le calibrage</source>
        <translation>Go on with the calibration</translation>
    </message>
    <message>
        <source>Date du dernier calibrage&#xa0;: inconnue</source>
        <translation>Date of the last calibration: unknown</translation>
    </message>
    <message>
        <source>Essais restants&#xa0;: %1 sur %2</source>
        <translation>Attempts left: %1 of %2</translation>
    </message>
    <message>
        <source>%1 s. Ne déplacez pas l&apos;appareil.</source>
        <translation>%1 s. Do not move the instrument.</translation>
    </message>
    <message>
        <source>Démarrer le calibrage</source>
        <translation>Start the calibration</translation>
    </message>
    <message>
        <source>Arrêter</source>
        <translation>Stop</translation>
    </message>
    <message>
        <source>Échec du calibrage</source>
        <translation>Calibration failed</translation>
    </message>
    <message>
        <source>Tenez l&apos;appareil, obturateur fermé, à l&apos;écart de toute surface, puis démarrez.</source>
        <translation>Hold the instrument, shutter closed, away from any surface, then start.</translation>
    </message>
    <message>
        <source>Dernier calibrage réussi : %1</source>
        <translation>Last successful calibration: %1</translation>
    </message>
    <message>
        <source>Plus qu&apos;un essai&#xa0;: un échec bloquera le calibrage.</source>
        <translation>One attempt left: a failure will block calibration.</translation>
    </message>
    <message>
        <source>Pour le refaire, tenez l&apos;appareil, obturateur fermé, à l&apos;écart de toute surface.</source>
        <translation>To repeat it, hold the instrument, shutter closed, away from any surface.</translation>
    </message>
    <message>
        <source>Refaire le calibrage</source>
        <translation>Repeat the calibration</translation>
    </message>
</context>
<context>
    <name>ConfirmDialog</name>
    <message>
        <source>Confirmer</source>
        <translation>Confirm</translation>
    </message>
    <message>
        <source>Annuler</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>DiagnosticFiles</name>
    <message>
        <source>ce n&apos;est pas un diagnostic</source>
        <translation>this is no diagnostic</translation>
    </message>
    <message>
        <source>le fichier s&apos;arrête à la ligne&#xa0;%1</source>
        <translation>the file ends at line %1</translation>
    </message>
    <message>
        <source>illisible à la ligne&#xa0;%1, colonne %2</source>
        <translation>unreadable at line %1, column %2</translation>
    </message>
    <message>
        <source> (récupéré)</source>
        <translation> (recovered)</translation>
    </message>
    <message>
        <source> (récupéré %1)</source>
        <comment>a further copy</comment>
        <translation> (recovered %1)</translation>
    </message>
</context>
<context>
    <name>DiagnosticScreen</name>
    <message>
        <source>Diagnostic</source>
        <translation>Diagnostic</translation>
    </message>
    <message>
        <source>Locaux et unités</source>
        <translation>Rooms and units</translation>
    </message>
    <message>
        <source>rien d&apos;enregistré encore</source>
        <translation>nothing recorded yet</translation>
    </message>
    <message numerus="yes">
        <source>%n unité(s)</source>
        <translation>
            <numerusform>%n unit</numerusform>
            <numerusform>%n units</numerusform>
        </translation>
    </message>
    <message>
        <source>Adresse ou lieu</source>
        <translation>Address or place</translation>
    </message>
    <message>
        <source>Dégradations du bâtiment</source>
        <translation>Damage to the building</translation>
    </message>
    <message>
        <source>Effondrement de plancher ou de plafond</source>
        <translation>Collapse of a floor or ceiling</translation>
    </message>
    <message>
        <source>Coulures ou ruissellements d&apos;eau</source>
        <translation>Water streaks or seepage</translation>
    </message>
    <message>
        <source>Humidité, moisissures</source>
        <translation>Damp, mould</translation>
    </message>
    <message>
        <source>aucun contrôle fait</source>
        <translation>no check made</translation>
    </message>
    <message>
        <source>Justesse</source>
        <translation>Accuracy checks</translation>
    </message>
    <message>
        <source>%1&#xa0;:&#xa0;%2</source>
        <translation>%1:&#xa0;%2</translation>
    </message>
</context>
<context>
    <name>DiagnosticsScreen</name>
    <message>
        <source>Diagnostics</source>
        <translation>Diagnostics</translation>
    </message>
    <message>
        <source>Place libre&#xa0;: %1</source>
        <translation>Free space: %1</translation>
    </message>
    <message>
        <source>Nouveau</source>
        <translation>New</translation>
    </message>
    <message>
        <source>Fichier endommagé</source>
        <translation>Damaged file</translation>
    </message>
    <message>
        <source>«&#xa0;%1&#xa0;» n&apos;est pas lisible en entier (%2). Ouvrir ce qui peut l&apos;être&#xa0;? L&apos;original est gardé à côté.</source>
        <translation>“%1” cannot be read completely (%2). Open what can be? The original is kept beside it.</translation>
    </message>
    <message>
        <source>Ouvrir ce qui est lisible</source>
        <translation>Open what can be read</translation>
    </message>
    <message>
        <source>«&#xa0;%1&#xa0;» sera effacé de l&apos;instrument. Il ne pourra pas être retrouvé.</source>
        <translation>“%1” will be erased from the instrument. It cannot be brought back.</translation>
    </message>
    <message>
        <source>Supprimer</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>«&#xa0;%1&#xa0;» n&apos;a pas pu être supprimé.</source>
        <translation>“%1” could not be deleted.</translation>
    </message>
    <message>
        <source>«&#xa0;%1&#xa0;» est supprimé.</source>
        <translation>“%1” is deleted.</translation>
    </message>
    <message>
        <source>Aucun diagnostic. Créez le premier avec «&#xa0;Nouveau&#xa0;».</source>
        <translation>No diagnostic. Make the first with “New”.</translation>
    </message>
    <message>
        <source>Endommagé&#xa0;: %1</source>
        <translation>Damaged: %1</translation>
    </message>
    <message numerus="yes">
        <source>%n unité(s)</source>
        <translation>
            <numerusform>%n unit</numerusform>
            <numerusform>%n units</numerusform>
        </translation>
    </message>
    <message>
        <source>Supprimer «&#xa0;%1&#xa0;»</source>
        <translation>Delete “%1”</translation>
    </message>
    <message>
        <source>Supprimer le diagnostic&#xa0;?</source>
        <translation>Delete the diagnostic?</translation>
    </message>
</context>
<context>
    <name>DirectScreen</name>
    <message>
        <source>Mesures directes</source>
        <translation>Direct measurements</translation>
    </message>
    <message>
        <source>Réglages de mesure</source>
        <translation>Measurement settings</translation>
    </message>
    <message>
        <source>Pas encore de mesure.</source>
        <translation>No measurement yet.</translation>
    </message>
    <message>
        <source>Vider la liste</source>
        <translation>Empty the list</translation>
    </message>
    <message>
        <source>Les mesures directes ne sont dans aucun fichier&#xa0;: elles seront perdues.</source>
        <translation>Direct measurements are in no file: they will be lost.</translation>
    </message>
    <message>
        <source>Vider la liste&#xa0;?</source>
        <translation>Empty the list?</translation>
    </message>
</context>
<context>
    <name>Fact</name>
    <message>
        <source>%1 : %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>HoldOffScreen</name>
    <message>
        <source>L&apos;instrument se met en condition</source>
        <translation>The instrument is settling</translation>
    </message>
    <message numerus="yes">
        <source>%n seconde(s)</source>
        <translation>
            <numerusform>%n second</numerusform>
            <numerusform>%n seconds</numerusform>
        </translation>
    </message>
    <message>
        <source>encore un instant</source>
        <translation>a moment more</translation>
    </message>
    <message>
        <source>Attente au démarrage</source>
        <translation>Hold-off at start-up</translation>
    </message>
    <message>
        <source>Posez l&apos;appareil, n&apos;actionnez pas la détente.</source>
        <translation>Put the instrument down, leave the trigger alone.</translation>
    </message>
</context>
<context>
    <name>HomeScreen</name>
    <message>
        <source>Que faire&#xa0;?</source>
        <translation>What next?</translation>
    </message>
    <message>
        <source>Affichage de jour</source>
        <translation>Day display</translation>
    </message>
    <message>
        <source>Affichage de nuit</source>
        <translation>Night display</translation>
    </message>
    <message>
        <source>Diagnostics</source>
        <translation>Diagnostics</translation>
    </message>
    <message>
        <source>Mesures directes</source>
        <translation>Direct measurements</translation>
    </message>
    <message>
        <source>Contrôle de justesse</source>
        <translation>Accuracy check</translation>
    </message>
    <message>
        <source>Calibrage</source>
        <translation>Calibration</translation>
    </message>
    <message>
        <source>Chocs</source>
        <translation>Shocks</translation>
    </message>
    <message>
        <source>Service</source>
        <translation>Service</translation>
    </message>
    <message>
        <source>Diagnostic ouvert</source>
        <translation>Open diagnostic</translation>
    </message>
    <message>
        <source>Diagnostic ouvert · %1</source>
        <translation>Open diagnostic · %1</translation>
    </message>
</context>
<context>
    <name>Instrument</name>
    <message>
        <source>La détente a ouvert l&apos;obturateur hors d&apos;une mesure&#xa0;: il est refermé, rien n&apos;est enregistré.</source>
        <translation>The trigger opened the shutter outside a measurement: it is closed again, nothing is recorded.</translation>
    </message>
    <message>
        <source>«&#xa0;%1&#xa0;» n&apos;a pas pu être enregistré. Vérifiez la place libre.</source>
        <translation>“%1” could not be saved. Check the free space.</translation>
    </message>
    <message>
        <source>Le service d&apos;analyse ne répond pas.</source>
        <translation>The analysis service does not answer.</translation>
    </message>
</context>
<context>
    <name>LocalisationCross</name>
    <message>
        <source>Position&#xa0;: %1</source>
        <translation>Position: %1</translation>
    </message>
    <message>
        <source>Où sur l&apos;élément&#xa0;?</source>
        <translation>Where on the element?</translation>
    </message>
</context>
<context>
    <name>LogScreen</name>
    <message>
        <source>Journal</source>
        <translation>Log</translation>
    </message>
    <message>
        <source>Lignes qui contiennent…</source>
        <translation>Lines that contain…</translation>
    </message>
    <message>
        <source>Aucune ligne.</source>
        <translation>No line.</translation>
    </message>
    <message>
        <source>Journal moins détaillé</source>
        <translation>Less detailed log</translation>
    </message>
    <message>
        <source>Journal plus détaillé</source>
        <translation>More detailed log</translation>
    </message>
    <message>
        <source>Niveau&#xa0;: %1</source>
        <comment>of the log</comment>
        <translation>Level: %1</translation>
    </message>
    <message>
        <source>aucun</source>
        <translation>none</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Analyseur</source>
        <translation>Analyser</translation>
    </message>
</context>
<context>
    <name>MeasureBar</name>
    <message>
        <source>%1 plus ou moins %2, seuil %3</source>
        <translation>%1 plus or minus %2, threshold %3</translation>
    </message>
    <message>
        <source>référence %1 ± %2</source>
        <translation>reference %1 ± %2</translation>
    </message>
    <message>
        <source>seuil %1</source>
        <translation>threshold %1</translation>
    </message>
    <message>
        <source>%1 mg/cm²</source>
        <translation>%1 mg/cm²</translation>
    </message>
</context>
<context>
    <name>MeasureFace</name>
    <message>
        <source>%1&#xa0;: %2, %3 plus ou moins %4</source>
        <translation>%1: %2, %3 plus or minus %4</translation>
    </message>
    <message>
        <source>± %1 mg/cm²</source>
        <translation>± %1 mg/cm²</translation>
    </message>
    <message>
        <source>Interrompue</source>
        <translation>Interrupted</translation>
    </message>
    <message>
        <source>%1 · pas un résultat</source>
        <comment>after a value</comment>
        <translation>%1 · not a result</translation>
    </message>
</context>
<context>
    <name>MeasureRow</name>
    <message>
        <source>Mesure %1</source>
        <translation>Measurement %1</translation>
    </message>
    <message>
        <source>%1 · en cours</source>
        <translation>%1 · running</translation>
    </message>
    <message>
        <source>Mesure %1 · tir n° %2</source>
        <translation>Measurement %1 · shot no. %2</translation>
    </message>
</context>
<context>
    <name>MeasureScreen</name>
    <message>
        <source>Mesure %1</source>
        <translation>Measurement %1</translation>
    </message>
    <message>
        <source>Résultat</source>
        <translation>Result</translation>
    </message>
    <message>
        <source>Nature de la dégradation</source>
        <translation>Kind of degradation</translation>
    </message>
    <message>
        <source>État de conservation</source>
        <translation>State of conservation</translation>
    </message>
    <message>
        <source>rien de noté</source>
        <translation>nothing noted</translation>
    </message>
    <message>
        <source>tir n° %1</source>
        <translation>shot no. %1</translation>
    </message>
</context>
<context>
    <name>MeasuringScreen</name>
    <message>
        <source>Mesure en cours</source>
        <translation>Measuring</translation>
    </message>
    <message>
        <source>Quitter quand même</source>
        <translation>Leave all the same</translation>
    </message>
    <message>
        <source>Interrompre et quitter</source>
        <translation>Break off and leave</translation>
    </message>
    <message>
        <source>Continuer la mesure</source>
        <translation>Go on measuring</translation>
    </message>
    <message>
        <source>Relâchez la détente pour terminer la mesure. Interrompue, elle reste sans résultat.</source>
        <translation>Release the trigger to end the measurement. Broken off, it has no result.</translation>
    </message>
    <message>
        <source>Terminer avec le résultat et quitter</source>
        <translation>End with the result and leave</translation>
    </message>
    <message>
        <source>L&apos;instrument ne répond pas. Quitter quand même&#xa0;? La mesure s&apos;arrête avec ses derniers résultats.</source>
        <translation>The instrument does not answer. Leave anyway? The measurement ends with its last results.</translation>
    </message>
    <message>
        <source>La mesure se termine d&apos;elle-même. Interrompue, elle reste sans résultat.</source>
        <translation>The measurement ends by itself. Interrupted, it stays without a result.</translation>
    </message>
</context>
<context>
    <name>Nav</name>
    <message>
        <source>Mesure en cours&#xa0;: relâchez d&apos;abord la détente.</source>
        <translation>Measurement running: release the trigger first.</translation>
    </message>
</context>
<context>
    <name>NewDiagnosticScreen</name>
    <message>
        <source>Nouveau diagnostic</source>
        <translation>New diagnostic</translation>
    </message>
    <message>
        <source>Un diagnostic porte déjà ce nom.</source>
        <translation>A diagnostic has this name already.</translation>
    </message>
    <message>
        <source>Le fichier ne peut pas être écrit. Vérifiez la place libre.</source>
        <translation>The file cannot be written. Check the free space.</translation>
    </message>
    <message>
        <source>Nom du diagnostic</source>
        <translation>Name of the diagnostic</translation>
    </message>
    <message>
        <source>Adresse ou lieu</source>
        <translation>Address or place</translation>
    </message>
    <message>
        <source>Créer le diagnostic</source>
        <translation>Make the diagnostic</translation>
    </message>
</context>
<context>
    <name>PickScreen</name>
    <message>
        <source>«&#xa0;%1&#xa0;» n&apos;a pas pu être gardé pour la prochaine fois.</source>
        <translation>“%1” could not be kept for the next time.</translation>
    </message>
    <message>
        <source>Chercher ou ajouter</source>
        <translation>Search or add</translation>
    </message>
    <message>
        <source>Chercher</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>Cette liste est vide.</source>
        <translation>This list is empty.</translation>
    </message>
    <message>
        <source>Rien ne correspond à «&#xa0;%1&#xa0;».</source>
        <translation>Nothing matches “%1”.</translation>
    </message>
    <message>
        <source>Ajouter «&#xa0;%1&#xa0;»</source>
        <translation>Add “%1”</translation>
    </message>
    <message>
        <source>Ne rien noter</source>
        <translation>No note</translation>
    </message>
    <message>
        <source>ajouté sur l&apos;instrument</source>
        <translation>added on the instrument</translation>
    </message>
</context>
<context>
    <name>PinScreen</name>
    <message>
        <source>Code d&apos;accès</source>
        <translation>Access code</translation>
    </message>
    <message numerus="yes">
        <source>%n chiffre(s) sur cinq</source>
        <translation>
            <numerusform>%n digit of five</numerusform>
            <numerusform>%n digits of five</numerusform>
        </translation>
    </message>
    <message>
        <source>Saisie bloquée&#xa0;: patientez cinq secondes.</source>
        <translation>Entry locked: wait for five seconds.</translation>
    </message>
    <message>
        <source>Tapez vos cinq chiffres.</source>
        <translation>Type your five digits.</translation>
    </message>
    <message>
        <source>Code refusé. Essais restants&#xa0;: %1</source>
        <translation>Code refused. Attempts left: %1</translation>
    </message>
    <message>
        <source>Tout effacer</source>
        <translation>Clear all</translation>
    </message>
    <message>
        <source>Effacer le dernier chiffre</source>
        <translation>Clear the last digit</translation>
    </message>
</context>
<context>
    <name>RoomsScreen</name>
    <message>
        <source>Locaux</source>
        <translation>Rooms</translation>
    </message>
    <message>
        <source>Local</source>
        <translation>Room</translation>
    </message>
    <message>
        <source>Choisir un local</source>
        <translation>Choose a room</translation>
    </message>
    <message numerus="yes">
        <source>%n unité(s)</source>
        <translation>
            <numerusform>%n unit</numerusform>
            <numerusform>%n units</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 à mesurer</source>
        <translation>%1 to measure</translation>
    </message>
    <message>
        <source>Aucun local encore. Ajoutez le premier avec «&#xa0;Local&#xa0;».</source>
        <translation>No room yet. Add the first with “Room”.</translation>
    </message>
    <message>
        <source>%1 pos.</source>
        <comment>positive units of a room</comment>
        <translation>%1 pos.</translation>
    </message>
    <message>
        <source>terminé</source>
        <translation>done</translation>
    </message>
</context>
<context>
    <name>Screen</name>
    <message>
        <source>Retour</source>
        <translation>Back</translation>
    </message>
</context>
<context>
    <name>ServiceScreen</name>
    <message>
        <source>Service</source>
        <translation>Service</translation>
    </message>
    <message>
        <source>Appareil %1</source>
        <translation>Instrument %1</translation>
    </message>
    <message>
        <source>Numéro de série</source>
        <translation>Serial number</translation>
    </message>
    <message>
        <source>Numéro ASN</source>
        <translation>ASN number</translation>
    </message>
    <message>
        <source>Numéro VISA</source>
        <translation>VISA number</translation>
    </message>
    <message>
        <source>Bibliothèque</source>
        <translation>Library</translation>
    </message>
    <message>
        <source>MSP, micrologiciel</source>
        <translation>MSP, firmware</translation>
    </message>
    <message>
        <source>MSP, serveur</source>
        <translation>MSP, server</translation>
    </message>
    <message>
        <source>Fichier de configuration</source>
        <translation>Configuration file</translation>
    </message>
    <message>
        <source>Fin de la source</source>
        <translation>Source ends</translation>
    </message>
    <message>
        <source>Alerte avant la fin</source>
        <translation>Warning before that</translation>
    </message>
    <message>
        <source>Dernier calibrage</source>
        <translation>Last calibration</translation>
    </message>
    <message>
        <source>Fin de mesure à l&apos;allumage</source>
        <translation>Measuring mode at start-up</translation>
    </message>
    <message>
        <source>Attente avant mesure</source>
        <translation>Wait before measuring</translation>
    </message>
    <message>
        <source>Durée maximale d&apos;une erreur</source>
        <translation>Longest error</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>Répertoire</source>
        <translation>Directory</translation>
    </message>
    <message>
        <source>Ce fichier n&apos;a pas encore été écrit.</source>
        <translation>This file has not been written yet.</translation>
    </message>
    <message>
        <source>Éteindre</source>
        <translation>Shut down</translation>
    </message>
    <message>
        <source>Éteindre l&apos;instrument&#xa0;?</source>
        <translation>Shut the instrument down?</translation>
    </message>
    <message>
        <source>«&#xa0;%1&#xa0;» est enregistré, puis l&apos;instrument s&apos;éteint.</source>
        <translation>“%1” is saved, then the instrument shuts down.</translation>
    </message>
    <message>
        <source>Effacer les fichiers de mesure</source>
        <translation>Erase the measurement files</translation>
    </message>
    <message>
        <source>Tout effacer</source>
        <translation>Erase all</translation>
    </message>
    <message>
        <source>Les fichiers de mesure sont effacés.</source>
        <translation>The measurement files are erased.</translation>
    </message>
    <message>
        <source>Mot de passe du Wi-Fi</source>
        <translation>Wi-Fi password</translation>
    </message>
    <message>
        <source>toucher pour l&apos;afficher</source>
        <translation>touch to show it</translation>
    </message>
    <message>
        <source>Journal</source>
        <translation>Log</translation>
    </message>
    <message>
        <source>ce que l&apos;instrument note, ligne par ligne</source>
        <translation>what the instrument notes, line by line</translation>
    </message>
    <message>
        <source>Fichier d&apos;information</source>
        <translation>Information file</translation>
    </message>
    <message>
        <source>Interroger l&apos;instrument</source>
        <translation>Ask the instrument</translation>
    </message>
    <message>
        <source>Éteindre l&apos;instrument</source>
        <translation>Shut the instrument down</translation>
    </message>
    <message numerus="yes">
        <source>%n diagnostic(s) n&apos;ont pas pu être effacés.</source>
        <translation>
            <numerusform>%n diagnostic could not be erased.</numerusform>
            <numerusform>%n diagnostics could not be erased.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n mois</source>
        <translation>
            <numerusform>%n month</numerusform>
            <numerusform>%n months</numerusform>
        </translation>
    </message>
    <message>
        <source>Éteindre&#xa0;?</source>
        <translation>Shut down?</translation>
    </message>
    <message>
        <source>Effacer les fichiers de mesure&#xa0;?</source>
        <translation>Erase the measurement files?</translation>
    </message>
    <message>
        <source>Tous les diagnostics et les journaux de l&apos;instrument seront effacés, et au prochain démarrage l&apos;historique des chocs.</source>
        <translation>All diagnostics and the logs of the instrument will be erased, and the history of shocks at the next start.</translation>
    </message>
    <message>
        <source>Durée d&apos;une mesure</source>
        <translation>Measurement time</translation>
    </message>
    <message>
        <source>Bip</source>
        <translation>Beep</translation>
    </message>
    <message>
        <source>Lampe</source>
        <translation>Light</translation>
    </message>
    <message>
        <source>Négatives par unité à l&apos;allumage</source>
        <translation>Negatives per unit, default</translation>
    </message>
    <message>
        <source>Lambrik, configuration</source>
        <translation>Lambrik, configuration</translation>
    </message>
    <message>
        <source>Marten, configuration</source>
        <translation>Marten, configuration</translation>
    </message>
    <message>
        <source>Application SAV, configuration</source>
        <translation>Service application, configuration</translation>
    </message>
</context>
<context>
    <name>SettingsScreen</name>
    <message>
        <source>La mesure dure tant que la détente est pressée.</source>
        <translation>The measurement lasts while the trigger is held.</translation>
    </message>
    <message>
        <source>La mesure s&apos;arrête dès que la décision est acquise.</source>
        <translation>The measurement ends as soon as there is a decision.</translation>
    </message>
    <message>
        <source>La mesure dure le temps réglé.</source>
        <translation>The measurement lasts the time set.</translation>
    </message>
    <message>
        <source>Réglages de mesure</source>
        <translation>Measurement settings</translation>
    </message>
    <message>
        <source>Fin de la mesure</source>
        <translation>End of a measurement</translation>
    </message>
    <message>
        <source>s</source>
        <translation>s</translation>
    </message>
    <message>
        <source>Mesures négatives pour une unité négative</source>
        <translation>Negative measurements for a negative unit</translation>
    </message>
    <message>
        <source>Valeurs</source>
        <translation>Values</translation>
    </message>
    <message>
        <source>Durée fixe d&apos;une mesure</source>
        <translation>Fixed measurement time</translation>
    </message>
</context>
<context>
    <name>ShocksScreen</name>
    <message>
        <source>Chocs</source>
        <translation>Shocks</translation>
    </message>
    <message>
        <source>aucun choc enregistré</source>
        <translation>no shock recorded</translation>
    </message>
    <message>
        <source>dernier&#xa0;: %1</source>
        <translation>last: %1</translation>
    </message>
    <message>
        <source>Aucun choc enregistré.</source>
        <translation>No shock recorded.</translation>
    </message>
    <message>
        <source>date illisible</source>
        <translation>unreadable date</translation>
    </message>
    <message>
        <source>choc n° %1</source>
        <translation>shock no. %1</translation>
    </message>
</context>
<context>
    <name>ShotPanel</name>
    <message>
        <source>Obturateur ouvert</source>
        <translation>Shutter open</translation>
    </message>
    <message>
        <source>La mesure s&apos;établit</source>
        <translation>The measurement is settling</translation>
    </message>
    <message>
        <source>Mesure en cours</source>
        <translation>Measuring</translation>
    </message>
    <message>
        <source>Mesure terminée</source>
        <translation>Measurement done</translation>
    </message>
    <message>
        <source>Prêt à mesurer</source>
        <translation>Ready to measure</translation>
    </message>
    <message>
        <source>En veille</source>
        <translation>Standby</translation>
    </message>
    <message>
        <source>Maintenez la détente et l&apos;appareil contre la surface.</source>
        <translation>Hold the trigger, and the instrument against the surface.</translation>
    </message>
    <message>
        <source>Maintenez la détente jusqu&apos;à la décision.</source>
        <translation>Hold the trigger until there is a decision.</translation>
    </message>
    <message>
        <source>Maintenez&#xa0;: la mesure dure %1 s.</source>
        <translation>Hold: the measurement lasts %1 s.</translation>
    </message>
    <message>
        <source>Maintenez&#xa0;: la mesure s&apos;arrête d&apos;elle-même.</source>
        <translation>Hold: the measurement ends by itself.</translation>
    </message>
    <message>
        <source>Appliquez l&apos;appareil, pressez la détente et maintenez-la.</source>
        <translation>Hold the instrument against the surface, then press and hold the trigger.</translation>
    </message>
    <message>
        <source>La détente est sans effet.</source>
        <translation>The trigger has no effect.</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>L&apos;instrument ne répond plus</source>
        <translation>The instrument has stopped answering</translation>
    </message>
    <message>
        <source>Mesure interrompue, sans résultat</source>
        <translation>Measurement interrupted, without a result</translation>
    </message>
    <message>
        <source>Décision acquise</source>
        <translation>Decision reached</translation>
    </message>
    <message>
        <source>Pas prêt à mesurer</source>
        <translation>Not ready to measure</translation>
    </message>
    <message>
        <source>Rapprochez l&apos;appareil de la surface et maintenez la détente.</source>
        <translation>Bring the instrument closer to the surface and keep holding the trigger.</translation>
    </message>
    <message>
        <source>Maintenez la détente jusqu&apos;à la décision définitive.</source>
        <translation>Keep holding the trigger until the decision is final.</translation>
    </message>
    <message>
        <source>La détente est sans effet. L&apos;unité a son résultat.</source>
        <translation>The trigger has no effect. The unit has its result.</translation>
    </message>
    <message>
        <source>Acquittez l&apos;erreur avant une nouvelle mesure.</source>
        <translation>Acknowledge the error before a new measurement.</translation>
    </message>
    <message>
        <source>La détente a été relâchée trop tôt. Pressez-la de nouveau et maintenez-la.</source>
        <translation>The trigger was released too early. Press it again and hold it.</translation>
    </message>
    <message>
        <source>Pressez de nouveau la détente pour une autre mesure.</source>
        <translation>Press the trigger again for another measurement.</translation>
    </message>
    <message>
        <source>L&apos;unité a son résultat.</source>
        <translation>The unit has its result.</translation>
    </message>
    <message>
        <source>La détente peut être relâchée. %1</source>
        <comment>followed by what comes next</comment>
        <translation>The trigger may be released. %1</translation>
    </message>
    <message>
        <source>Relâchez la détente et quittez cet écran.</source>
        <translation>Release the trigger and leave this screen.</translation>
    </message>
    <message>
        <source>Unité non mesurée</source>
        <translation>Unit not measured</translation>
    </message>
    <message>
        <source>La décision reste, la valeur peut encore changer&#xa0;: relâchez la détente.</source>
        <translation>The decision stays, the value may still change: release the trigger.</translation>
    </message>
    <message>
        <source>%1 °C, %2 V&#xa0;: attendez.</source>
        <translation>%1 °C, %2 V: wait.</translation>
    </message>
    <message>
        <source>Noté&#xa0;: %1</source>
        <translation>Noted: %1</translation>
    </message>
    <message>
        <source>Trop loin de la surface&#xa0;: rapprochez l&apos;appareil et pressez de nouveau la détente.</source>
        <translation>Too far from the surface: bring the instrument closer and press the trigger again.</translation>
    </message>
</context>
<context>
    <name>SignChip</name>
    <message>
        <source>%1, provisoire</source>
        <translation>%1, provisional</translation>
    </message>
</context>
<context>
    <name>StatusBar</name>
    <message>
        <source>État de l&apos;instrument</source>
        <translation>State of the instrument</translation>
    </message>
    <message>
        <source>Batterie&#xa0;: %1</source>
        <translation>Battery: %1</translation>
    </message>
    <message>
        <source>Prêt</source>
        <translation>Ready</translation>
    </message>
    <message>
        <source>Pas prêt</source>
        <translation>Not ready</translation>
    </message>
    <message>
        <source>%1 °C · %2 V</source>
        <translation>%1 °C · %2 V</translation>
    </message>
    <message>
        <source>Choc signalé&#xa0;: voir l&apos;historique</source>
        <translation>Shock signalled: see the history</translation>
    </message>
    <message>
        <source>Historique des chocs</source>
        <translation>History of shocks</translation>
    </message>
    <message>
        <source>Lampe allumée&#xa0;: éteindre</source>
        <translation>Light on: switch off</translation>
    </message>
    <message>
        <source>Allumer la lampe</source>
        <translation>Switch the light on</translation>
    </message>
    <message>
        <source>Date et heure&#xa0;: %1</source>
        <translation>Date and time: %1</translation>
    </message>
    <message>
        <source>Source&#xa0;: fin le %1</source>
        <translation>Source: ends %1</translation>
    </message>
    <message numerus="yes">
        <source>Source périmée depuis %n jour(s)</source>
        <translation>
            <numerusform>Source expired %n day ago</numerusform>
            <numerusform>Source expired %n days ago</numerusform>
        </translation>
    </message>
    <message>
        <source>En attente</source>
        <translation>Waiting</translation>
    </message>
    <message>
        <source>Wi-Fi activé&#xa0;: désactiver</source>
        <translation>Wi-Fi on: switch off</translation>
    </message>
    <message>
        <source>Wi-Fi désactivé&#xa0;: activer</source>
        <translation>Wi-Fi off: switch on</translation>
    </message>
    <message>
        <source>Wi-Fi activé</source>
        <translation>Wi-Fi on</translation>
    </message>
    <message>
        <source>Wi-Fi désactivé</source>
        <translation>Wi-Fi off</translation>
    </message>
    <message>
        <source>Erreur</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Sans réponse</source>
        <translation>No answer</translation>
    </message>
</context>
<context>
    <name>Stepper</name>
    <message>
        <source>%1&#xa0;: un nombre de %2 à %3.</source>
        <translation>%1: a number from %2 to %3.</translation>
    </message>
    <message>
        <source>Moins&#xa0;: %1</source>
        <translation>Less: %1</translation>
    </message>
    <message>
        <source>Plus&#xa0;: %1</source>
        <translation>More: %1</translation>
    </message>
</context>
<context>
    <name>UnitScreen</name>
    <message>
        <source>%1 · unité n° %2</source>
        <translation>%1 · unit no. %2</translation>
    </message>
    <message>
        <source>Zone</source>
        <translation>Zone</translation>
    </message>
    <message>
        <source>Zone %1</source>
        <translation>Zone %1</translation>
    </message>
    <message>
        <source>Élément à choisir</source>
        <translation>Choose an element</translation>
    </message>
    <message>
        <source>Élément</source>
        <translation>Element</translation>
    </message>
    <message>
        <source>Substrat à choisir</source>
        <translation>Choose a substrate</translation>
    </message>
    <message>
        <source>Substrat</source>
        <translation>Substrate</translation>
    </message>
    <message>
        <source>Revêtement à choisir</source>
        <translation>Choose a coating</translation>
    </message>
    <message>
        <source>Revêtement</source>
        <translation>Coating</translation>
    </message>
    <message>
        <source>Observation</source>
        <translation>Observation</translation>
    </message>
    <message>
        <source>Mesures de l&apos;unité</source>
        <translation>Measurements of the unit</translation>
    </message>
    <message>
        <source>Pas encore de mesure.</source>
        <translation>No measurement yet.</translation>
    </message>
    <message numerus="yes">
        <source>%n mesure(s), la dernière en bas</source>
        <translation>
            <numerusform>%n measurement</numerusform>
            <numerusform>%n measurements, the last at the bottom</numerusform>
        </translation>
    </message>
    <message>
        <source>Supprimer l&apos;unité</source>
        <translation>Delete the unit</translation>
    </message>
    <message>
        <source>Remesurer</source>
        <translation>Measure again</translation>
    </message>
    <message>
        <source>Zone suivante</source>
        <translation>Next zone</translation>
    </message>
    <message>
        <source>Pourquoi cette unité n&apos;est-elle pas mesurée&#xa0;?</source>
        <translation>Why is this unit not measured?</translation>
    </message>
    <message>
        <source>L&apos;unité ne peut pas être mesurée</source>
        <translation>The unit cannot be measured</translation>
    </message>
    <message>
        <source>Le local n&apos;a pas été visité</source>
        <translation>The room was not visited</translation>
    </message>
    <message>
        <source>Raison&#xa0;: non mesurée</source>
        <translation>Reason: not measured</translation>
    </message>
    <message>
        <source>Supprimer</source>
        <translation>Delete</translation>
    </message>
    <message>
        <source>Raison&#xa0;: local non visité</source>
        <translation>Reason: room not visited</translation>
    </message>
    <message>
        <source>Lettre précédente</source>
        <translation>Letter before</translation>
    </message>
    <message>
        <source>Lettre suivante</source>
        <translation>Letter after</translation>
    </message>
    <message>
        <source>rien de noté</source>
        <translation>nothing noted</translation>
    </message>
    <message>
        <source>Ne pas mesurer</source>
        <translation>Do not measure</translation>
    </message>
    <message>
        <source>Supprimer l&apos;unité&#xa0;?</source>
        <translation>Delete the unit?</translation>
    </message>
    <message>
        <source>Mesurer</source>
        <translation>Measure</translation>
    </message>
    <message numerus="yes">
        <source>il manque %n négative(s)</source>
        <translation>
            <numerusform>%n more negative needed</numerusform>
            <numerusform>%n more negatives needed</numerusform>
        </translation>
    </message>
    <message>
        <source>L&apos;unité n° %1 (%2) et ses mesures seront effacées du diagnostic.</source>
        <translation>Unit no. %1 (%2) and its measurements will be erased from the diagnostic.</translation>
    </message>
</context>
<context>
    <name>UnitsScreen</name>
    <message numerus="yes">
        <source>%n unité(s)</source>
        <translation>
            <numerusform>%n unit</numerusform>
            <numerusform>%n units</numerusform>
        </translation>
    </message>
    <message>
        <source>Unité</source>
        <translation>Unit</translation>
    </message>
    <message>
        <source>Aucune unité dans ce local. Ajoutez la première avec «&#xa0;Unité&#xa0;».</source>
        <translation>No unit in this room. Add the first with “Unit”.</translation>
    </message>
    <message>
        <source>Unités de %1</source>
        <translation>Units of %1</translation>
    </message>
</context>
<context>
    <name>UnsavedDialog</name>
    <message>
        <source>Diagnostic non enregistré</source>
        <translation>Diagnostic not saved</translation>
    </message>
    <message>
        <source>«&#xa0;%1&#xa0;» n&apos;a pas pu être écrit. Continuer perd ce qui n&apos;est pas encore dans son fichier.</source>
        <translation>“%1” could not be written. Going on loses what is not in its file yet.</translation>
    </message>
    <message>
        <source>Continuer sans enregistrer</source>
        <translation>Go on without saving</translation>
    </message>
</context>
<context>
    <name>Words</name>
    <message>
        <source>fr_FR</source>
        <comment>locale of numbers</comment>
        <translation>en_GB</translation>
    </message>
    <message>
        <source>Positive</source>
        <translation>Positive</translation>
    </message>
    <message>
        <source>Négative</source>
        <translation>Negative</translation>
    </message>
    <message>
        <source>Indéterminée</source>
        <translation>Undetermined</translation>
    </message>
    <message>
        <source>Mesure trop courte</source>
        <translation>Measurement too short</translation>
    </message>
    <message>
        <source>Trop loin de la surface</source>
        <translation>Too far from the surface</translation>
    </message>
    <message>
        <source>Confirmée</source>
        <translation>Confirmed</translation>
    </message>
    <message>
        <source>Non confirmée</source>
        <translation>Not confirmed</translation>
    </message>
    <message>
        <source>Pas de décision</source>
        <translation>No decision</translation>
    </message>
    <message>
        <source>Non mesurée</source>
        <translation>Not measured</translation>
    </message>
    <message>
        <source>À mesurer</source>
        <translation>To measure</translation>
    </message>
    <message>
        <source>Gauche</source>
        <translation>Left</translation>
    </message>
    <message>
        <source>Haut</source>
        <translation>Top</translation>
    </message>
    <message>
        <source>Centre</source>
        <translation>Centre</translation>
    </message>
    <message>
        <source>Bas</source>
        <translation>Bottom</translation>
    </message>
    <message>
        <source>Droite</source>
        <translation>Right</translation>
    </message>
    <message>
        <source>Position non précisée</source>
        <translation>No position given</translation>
    </message>
    <message>
        <source>Non visible</source>
        <translation>Not visible</translation>
    </message>
    <message>
        <source>État d&apos;usage</source>
        <translation>Worn</translation>
    </message>
    <message>
        <source>Dégradé</source>
        <translation>Degraded</translation>
    </message>
    <message>
        <source>Non dégradé</source>
        <translation>Not degraded</translation>
    </message>
    <message>
        <source>À la détente</source>
        <translation>While held</translation>
    </message>
    <message>
        <source>Durée fixe</source>
        <translation>Fixed time</translation>
    </message>
    <message>
        <source>Automatique</source>
        <translation>Automatic</translation>
    </message>
    <message>
        <source>Libre</source>
        <translation>Spot check</translation>
    </message>
    <message>
        <source>Début</source>
        <translation>Initial</translation>
    </message>
    <message>
        <source>Reprise</source>
        <translation>On resuming</translation>
    </message>
    <message>
        <source>Fin</source>
        <translation>Final</translation>
    </message>
    <message>
        <source>Vide</source>
        <translation>Empty</translation>
    </message>
    <message>
        <source>Très faible</source>
        <translation>Very low</translation>
    </message>
    <message>
        <source>Faible</source>
        <translation>Low</translation>
    </message>
    <message>
        <source>Bonne</source>
        <translation>Good</translation>
    </message>
    <message>
        <source>Pleine</source>
        <translation>Full</translation>
    </message>
    <message>
        <source>Inconnue</source>
        <translation>Unknown</translation>
    </message>
    <message>
        <source>Zone %1 · %2</source>
        <translation>Zone %1 · %2</translation>
    </message>
    <message>
        <source>élément à choisir</source>
        <translation>no element yet</translation>
    </message>
    <message>
        <source>inconnue</source>
        <translation>unknown</translation>
    </message>
    <message>
        <source>%1 ko</source>
        <translation>%1 kB</translation>
    </message>
    <message>
        <source>%1 Mo</source>
        <translation>%1 MB</translation>
    </message>
    <message>
        <source>%1 Go</source>
        <translation>%1 GB</translation>
    </message>
    <message>
        <source>Donnez un nom au diagnostic.</source>
        <translation>Give the diagnostic a name.</translation>
    </message>
    <message>
        <source>Le nom ne peut pas contenir «&#xa0;/&#xa0;».</source>
        <translation>The name cannot contain “/”.</translation>
    </message>
    <message>
        <source>Le nom ne peut pas commencer par un point.</source>
        <translation>The name cannot begin with a full stop.</translation>
    </message>
    <message>
        <source>Le nom est trop long.</source>
        <translation>The name is too long.</translation>
    </message>
    <message>
        <source>Calibrage à faire</source>
        <translation>To be calibrated</translation>
    </message>
</context>
</TS>
