<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>TUMessage</name>
    <message>
        <source>TUMessage::createInstace: Request to allocate a second TUMessage singleton</source>
        <translation>TUMessage::createInstace : demande d’allocation d’un second singleton TUMessage</translation>
    </message>
    <message>
        <source>Debug mode : ON</source>
        <translation>Mode débogage : ACTIVÉ</translation>
    </message>
    <message>
        <source>Debug mode : OFF</source>
        <translation>Mode débogage : DÉSACTIVÉ</translation>
    </message>
</context>
<context>
    <name>TUBatchMessage</name>
    <message>
        <source> Date - Time : %1</source>
        <translation> Date - Heure : %1</translation>
    </message>
    <message>
        <source> Application : %1</source>
        <translation> Programme : %1</translation>
    </message>
    <message>
        <source> Version : %1</source>
        <translation> Version : %1</translation>
    </message>
    <message>
        <source> O/S User name : %1</source>
        <translation> Nom d’utilisateur du système : %1</translation>
    </message>
    <message>
        <source> Debug mode : ON</source>
        <translation> Mode débogage : ACTIVÉ</translation>
    </message>
    <message>
        <source> Debug mode : OFF</source>
        <translation> Mode débogage : DÉSACTIVÉ</translation>
    </message>
</context>
<context>
    <name>pvtool</name>
    <message>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>No file given.</source>
        <translation>Aucun fichier indiqué.</translation>
    </message>
    <message>
        <source>No path given.</source>
        <translation>Aucun chemin indiqué.</translation>
    </message>
    <message>
        <source>Cannot read %1: %2</source>
        <translation>Impossible de lire %1 : %2</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a whole number of frames.</source>
        <translation>« %1 » n’est pas un nombre entier d’images.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not a positive frame rate.</source>
        <translation>« %1 » n’est pas une cadence positive.</translation>
    </message>
    <message>
        <source>Unknown command &apos;%1&apos;.</source>
        <translation>Commande inconnue « %1 ».</translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation>Option inconnue « %1 ».</translation>
    </message>
    <message>
        <source>Cannot write the output: %1</source>
        <translation>Impossible d’écrire la sortie : %1</translation>
    </message>
    <message>
        <source>No catalogue for language &apos;%1&apos;: messages stay in English.</source>
        <translation>Aucun catalogue pour la langue « %1 » : les messages restent en anglais.</translation>
    </message>
</context>
<context>
    <name>oswRemapPath</name>
    <message>
        <source>Established connection to %1.</source>
        <translation>Connexion établie avec %1.</translation>
    </message>
    <message>
        <source>Could not connect to %1. Network is unavailable or Bad Path.</source>
        <translation>Connexion impossible avec %1. Réseau indisponible ou chemin incorrect.</translation>
    </message>
    <message>
        <source>Could not connect to %1. Access Denied.</source>
        <translation>Connexion impossible avec %1. Accès refusé.</translation>
    </message>
    <message>
        <source>Could not connect to %1. WNetAddConnection2 returned 0x%2.</source>
        <translation>Connexion impossible avec %1. WNetAddConnection2 a renvoyé 0x%2.</translation>
    </message>
</context>
</TS>
