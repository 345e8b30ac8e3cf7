<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="fr">
<context>
    <name>ConditionsCard</name>
    <message>
        <source>Conditions : prêt à mesurer</source>
        <translation>Conditions: ready to measure</translation>
    </message>
    <message>
        <source>Conditions : hors limites</source>
        <translation>Conditions: out of limits</translation>
    </message>
    <message>
        <source>Température</source>
        <translation>Temperature</translation>
    </message>
    <message>
        <source>°C</source>
        <translation>°C</translation>
    </message>
    <message>
        <source>Haute tension</source>
        <translation>High voltage</translation>
    </message>
    <message>
        <source>V</source>
        <translation>V</translation>
    </message>
    <message>
        <source>Batterie</source>
        <translation>Battery</translation>
    </message>
    <message>
        <source>Jauge de batterie absente</source>
        <translation>Battery gauge missing</translation>
    </message>
</context>
<context>
    <name>FaultsCard</name>
    <message>
        <source>Chocs et pannes</source>
        <translation>Shocks and faults</translation>
    </message>
    <message>
        <source>Choc à l&apos;arrêt</source>
        <translation>Shock at rest</translation>
    </message>
    <message>
        <source>Choc en marche</source>
        <translation>Shock at work</translation>
    </message>
    <message>
        <source>Obturateur en panne</source>
        <translation>Shutter fault</translation>
    </message>
    <message>
        <source>Ouverture ratée</source>
        <translation>Opening fails</translation>
    </message>
    <message>
        <source>Détecteur de chocs</source>
        <translation>Shock detector</translation>
    </message>
    <message>
        <source>Convertisseur (DAC)</source>
        <translation>Converter (DAC)</translation>
    </message>
    <message>
        <source>Haute tension</source>
        <translation>High voltage</translation>
    </message>
    <message>
        <source>Erreurs du service</source>
        <translation>Errors of the service</translation>
    </message>
    <message>
        <source>Température invalide</source>
        <translation>Invalid temperature</translation>
    </message>
    <message>
        <source>Tension invalide</source>
        <translation>Invalid voltage</translation>
    </message>
    <message>
        <source>Traitement (DPP)</source>
        <translation>Processing (DPP)</translation>
    </message>
    <message>
        <source>Gestion des données</source>
        <translation>Data manager</translation>
    </message>
    <message>
        <source>Délai dépassé</source>
        <translation>Time is out</translation>
    </message>
    <message>
        <source>Erreur inconnue</source>
        <translation>Unknown error</translation>
    </message>
    <message>
        <source>Les calibrages échouent</source>
        <translation>Calibrations fail</translation>
    </message>
</context>
<context>
    <name>LastDone</name>
    <message>
        <source>Bip</source>
        <translation>Beeper</translation>
    </message>
    <message>
        <source>sonne</source>
        <translation>sounds</translation>
    </message>
    <message>
        <source>muet, %1 en tout</source>
        <translation>silent, %1 in all</translation>
    </message>
    <message>
        <source>Lampe</source>
        <translation>Light</translation>
    </message>
    <message>
        <source>allumée</source>
        <translation>on</translation>
    </message>
    <message>
        <source>éteinte</source>
        <translation>off</translation>
    </message>
    <message>
        <source>Obturateur</source>
        <translation>Shutter</translation>
    </message>
    <message>
        <source>ouvert</source>
        <translation>open</translation>
    </message>
    <message>
        <source>fermé</source>
        <translation>closed</translation>
    </message>
    <message>
        <source>GPIO</source>
        <translation>GPIO</translation>
    </message>
    <message>
        <source>Commande</source>
        <translation>Command</translation>
    </message>
    <message>
        <source>Dernières actions</source>
        <translation>Done last</translation>
    </message>
    <message>
        <source>rien encore</source>
        <translation>nothing yet</translation>
    </message>
</context>
<context>
    <name>Panel</name>
    <message>
        <source>Instrument simulé</source>
        <translation>Simulated instrument</translation>
    </message>
    <message>
        <source>Refusé : %1</source>
        <translation>Refused: %1</translation>
    </message>
</context>
<context>
    <name>SampleCard</name>
    <message>
        <source>Échantillon</source>
        <translation>Sample</translation>
    </message>
    <message>
        <source>Bien sous le seuil</source>
        <translation>Well below</translation>
    </message>
    <message>
        <source>Bien au-dessus</source>
        <translation>Well above</translation>
    </message>
    <message>
        <source>Près du seuil</source>
        <translation>At the threshold</translation>
    </message>
    <message>
        <source>Trop loin</source>
        <translation>Too far</translation>
    </message>
    <message>
        <source>Concentration</source>
        <translation>Concentration</translation>
    </message>
    <message>
        <source>mg/cm²</source>
        <translation>mg/cm²</translation>
    </message>
    <message>
        <source>Distance</source>
        <translation>Distance</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>Substrat : %1</source>
        <translation>Substrate: %1</translation>
    </message>
</context>
<context>
    <name>ServicesCard</name>
    <message>
        <source>Service d&apos;analyse et microcontrôleur</source>
        <translation>Analysis service and microcontroller</translation>
    </message>
    <message>
        <source>Tuer le service</source>
        <translation>Kill the service</translation>
    </message>
    <message>
        <source>Relancer le service</source>
        <translation>Bring the service back</translation>
    </message>
    <message>
        <source>Réponse du service après</source>
        <translation>The service answers after</translation>
    </message>
    <message>
        <source>s</source>
        <translation>s</translation>
    </message>
    <message>
        <source>Le service se tait</source>
        <translation>The service is silent</translation>
    </message>
    <message>
        <source>Tuer le microcontrôleur</source>
        <translation>Kill the microcontroller</translation>
    </message>
    <message>
        <source>Relancer le microcontrôleur</source>
        <translation>Bring the microcontroller back</translation>
    </message>
    <message>
        <source>Le microcontrôleur refuse tout</source>
        <translation>The microcontroller refuses all</translation>
    </message>
</context>
<context>
    <name>SpeedCard</name>
    <message>
        <source>Vitesse du temps : × %1</source>
        <translation>Speed of time: × %1</translation>
    </message>
    <message>
        <source>Vitesse du temps : %1</source>
        <translation>Speed of time: %1</translation>
    </message>
</context>
<context>
    <name>TrafficPane</name>
    <message>
        <source>Tout</source>
        <translation>All</translation>
    </message>
    <message>
        <source>Trafic des deux liaisons</source>
        <translation>Traffic of both links</translation>
    </message>
    <message>
        <source>Trafic de la liaison %1</source>
        <translation>Traffic of the link %1</translation>
    </message>
    <message>
        <source>Effacer</source>
        <translation>Clear</translation>
    </message>
    <message>
        <source>Effacer le trafic</source>
        <translation>Clear the traffic</translation>
    </message>
    <message>
        <source>Trafic</source>
        <translation>Traffic</translation>
    </message>
    <message>
        <source>Rien n&apos;est encore passé.</source>
        <translation>Nothing has passed yet.</translation>
    </message>
</context>
<context>
    <name>TriggerBar</name>
    <message>
        <source>mesure en cours</source>
        <translation>measuring</translation>
    </message>
    <message>
        <source>contrôle de justesse en cours</source>
        <translation>checking the accuracy</translation>
    </message>
    <message>
        <source>calibrage en cours</source>
        <translation>calibrating</translation>
    </message>
    <message>
        <source>au repos</source>
        <translation>at rest</translation>
    </message>
    <message>
        <source>arrêté</source>
        <translation>stopped</translation>
    </message>
    <message>
        <source>en veille, détente sans effet</source>
        <translation>standby, trigger without effect</translation>
    </message>
    <message>
        <source>prêt, attend la détente</source>
        <translation>ready, waits for the trigger</translation>
    </message>
    <message>
        <source>obturateur ouvert par la détente</source>
        <translation>shutter opened by the trigger</translation>
    </message>
    <message>
        <source>prêt, sans détente</source>
        <translation>ready, without trigger</translation>
    </message>
    <message>
        <source>obturateur ouvert sans détente</source>
        <translation>shutter opened without trigger</translation>
    </message>
    <message>
        <source>en erreur, à acquitter</source>
        <translation>in error, to be acknowledged</translation>
    </message>
    <message>
        <source>aucune</source>
        <translation>none</translation>
    </message>
    <message>
        <source>%1 ± %2 mg/cm²</source>
        <translation>%1 ± %2 mg/cm²</translation>
    </message>
    <message>
        <source>Détente pressée</source>
        <translation>Trigger pressed</translation>
    </message>
    <message>
        <source>Presser et maintenir la détente</source>
        <translation>Press and hold the trigger</translation>
    </message>
    <message>
        <source>Pressée tant que le bouton l&apos;est.</source>
        <translation>Pressed for as long as the button is.</translation>
    </message>
    <message>
        <source>Garder pressée</source>
        <translation>Keep pressed</translation>
    </message>
    <message>
        <source>Microcontrôleur : %1</source>
        <translation>Microcontroller: %1</translation>
    </message>
    <message>
        <source>Service : %1</source>
        <translation>Service: %1</translation>
    </message>
    <message>
        <source>Dernière mesure terminée : %1</source>
        <translation>Last finished measurement: %1</translation>
    </message>
</context>
</TS>
