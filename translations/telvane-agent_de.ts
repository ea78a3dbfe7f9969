<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AgentCommands</name>
    <message>
        <source>password of %1 set in %2</source>
        <translation>Passwort von %1 in %2 gesetzt</translation>
    </message>
    <message>
        <source>no identity in %1; the agent makes one when it first starts with that --config-dir</source>
        <translation>keine Identität in %1; der Agent erstellt eine beim ersten Start mit diesem --config-dir</translation>
    </message>
    <message>
        <source>Try telvane-agent --help.</source>
        <translation>Siehe telvane-agent --help.</translation>
    </message>
</context>
<context>
    <name>AgentOptions</name>
    <message>
        <source>Telvane agent: serves statistics, the screen, input and uploads to the Telvane console.</source>
        <translation>Telvane-Agent: liefert der Telvane-Konsole Statistiken, den Bildschirm, Eingaben und Uploads.</translation>
    </message>
    <message>
        <source>Show this help and exit.</source>
        <translation>Diese Hilfe anzeigen und beenden.</translation>
    </message>
    <message>
        <source>TCP port to listen on (default 5905; 0 picks a free one).</source>
        <translation>TCP-Port, auf dem gelauscht wird (Vorgabe 5905; 0 wählt einen freien).</translation>
    </message>
    <message>
        <source>Address to listen on (default: all).</source>
        <translation>Adresse, auf der gelauscht wird (Vorgabe: alle).</translation>
    </message>
    <message>
        <source>Folder of the agent identity (default %1).</source>
        <translation>Ordner der Identität des Agenten (Vorgabe %1).</translation>
    </message>
    <message>
        <source>Folder for received files (default ~/Downloads).</source>
        <translation>Ordner für empfangene Dateien (Vorgabe ~/Downloads).</translation>
    </message>
    <message>
        <source>Seconds between statistics reports (default 5).</source>
        <translation>Sekunden zwischen zwei Statistikberichten (Vorgabe 5).</translation>
    </message>
    <message>
        <source>Serve simulated statistics and an animated test screen; no X11 needed.</source>
        <translation>Simulierte Statistiken und ein bewegtes Testbild liefern; ohne X11.</translation>
    </message>
    <message>
        <source>Run N simulated agents on consecutive ports.</source>
        <translation>N simulierte Agenten auf aufeinanderfolgenden Ports betreiben.</translation>
    </message>
    <message>
        <source>Print the fingerprint of the identity in the config folder and exit; never creates one.</source>
        <translation>Den Fingerabdruck der Identität im Konfigurationsordner ausgeben und beenden; legt nie eine an.</translation>
    </message>
    <message>
        <source>Authentication: pam (the account the agent runs as) or file.</source>
        <translation>Anmeldung: pam (das Konto, unter dem der Agent läuft) oder file.</translation>
    </message>
    <message>
        <source>Credentials file of --auth file (default &lt;config-dir&gt;/credentials).</source>
        <translation>Zugangsdatei für --auth file (Vorgabe &lt;config-dir&gt;/credentials).</translation>
    </message>
    <message>
        <source>Set a password in the credentials file and exit.</source>
        <translation>Ein Passwort in der Zugangsdatei setzen und beenden.</translation>
    </message>
    <message>
        <source>User name for --set-password (default: the current account).</source>
        <translation>Benutzername für --set-password (Vorgabe: das aktuelle Konto).</translation>
    </message>
    <message>
        <source>Unexpected argument: %1</source>
        <translation>Unerwartetes Argument: %1</translation>
    </message>
    <message>
        <source>Invalid --port: %1</source>
        <translation>Ungültiger --port: %1</translation>
    </message>
    <message>
        <source>Invalid --bind address: %1</source>
        <translation>Ungültige Adresse für --bind: %1</translation>
    </message>
    <message>
        <source>Invalid --stats-interval (0.1 to 86400 seconds): %1</source>
        <translation>Ungültiges --stats-interval (0,1 bis 86400 Sekunden): %1</translation>
    </message>
    <message>
        <source>Invalid --fleet (1 to 1000): %1</source>
        <translation>Ungültiges --fleet (1 bis 1000): %1</translation>
    </message>
    <message>
        <source>--fleet %1 needs %1 consecutive ports from a fixed --port</source>
        <translation>--fleet %1 braucht %1 aufeinanderfolgende Ports ab einem festen --port</translation>
    </message>
    <message>
        <source>Invalid --config-dir</source>
        <translation>Ungültiges --config-dir</translation>
    </message>
    <message>
        <source>Invalid --uploads-dir</source>
        <translation>Ungültiges --uploads-dir</translation>
    </message>
    <message>
        <source>Invalid --auth (pam or file): %1</source>
        <translation>Ungültiges --auth (pam oder file): %1</translation>
    </message>
</context>
<context>
    <name>CredentialsFile</name>
    <message>
        <source>Invalid user name</source>
        <translation>Ungültiger Benutzername</translation>
    </message>
    <message>
        <source>The password must not be empty</source>
        <translation>Das Passwort darf nicht leer sein</translation>
    </message>
    <message>
        <source>The password could not be hashed</source>
        <translation>Das Passwort konnte nicht gehasht werden</translation>
    </message>
    <message>
        <source>Cannot create the folder %1</source>
        <translation>Der Ordner %1 kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>Cannot write %1: %2</source>
        <translation>%1 kann nicht geschrieben werden: %2</translation>
    </message>
</context>
<context>
    <name>PasswordPrompt</name>
    <message>
        <source>No password on standard input</source>
        <translation>Kein Passwort auf der Standardeingabe</translation>
    </message>
    <message>
        <source>New password: </source>
        <translation>Neues Passwort: </translation>
    </message>
    <message>
        <source>Repeat the password: </source>
        <translation>Passwort wiederholen: </translation>
    </message>
    <message>
        <source>No password entered</source>
        <translation>Kein Passwort eingegeben</translation>
    </message>
    <message>
        <source>The passwords do not match</source>
        <translation>Die Passwörter stimmen nicht überein</translation>
    </message>
</context>
</TS>
