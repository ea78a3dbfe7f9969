<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AppIntentUploadError</name>
    <message>
        <source>Shared upload directory is unavailable</source>
        <translation>Der gemeinsame Ordner für Uploads ist nicht verfügbar</translation>
    </message>
    <message>
        <source>The selected item is not a non-empty regular file</source>
        <translation>Das gewählte Objekt ist keine nicht leere, gewöhnliche Datei</translation>
    </message>
    <message>
        <source>The selected file exceeds the 256 MiB transfer limit</source>
        <translation>Die gewählte Datei überschreitet die Übertragungsgrenze von 256 MiB</translation>
    </message>
</context>
<context>
    <name>ComputerEntity</name>
    <message>
        <source>Remote Computer</source>
        <translation>Entfernter Rechner</translation>
    </message>
</context>
<context>
    <name>ConnectToComputerIntent</name>
    <message>
        <source>Queued connection for </source>
        <translation>Verbindung vorgemerkt für </translation>
    </message>
</context>
<context>
    <name>DisconnectFromComputerIntent</name>
    <message>
        <source>Queued disconnection for </source>
        <translation>Trennung vorgemerkt für </translation>
    </message>
</context>
<context>
    <name>GetComputerStatusIntent</name>
    <message>
        <source>: Disconnected (status not available via AppIntents)</source>
        <translation>: Getrennt (Status über AppIntents nicht verfügbar)</translation>
    </message>
    <message>
        <source> status check requested</source>
        <translation>: Statusabfrage angefordert</translation>
    </message>
</context>
<context>
    <name>IntentTable</name>
    <message>
        <source>Computer</source>
        <translation>Rechner</translation>
    </message>
    <message>
        <source>Computer Name</source>
        <translation>Rechnername</translation>
    </message>
    <message>
        <source>Connect to Remote Computer</source>
        <translation>Mit entferntem Rechner verbinden</translation>
    </message>
    <message>
        <source>The remote computer to connect to</source>
        <translation>Der entfernte Rechner, mit dem verbunden wird</translation>
    </message>
    <message>
        <source>Name of the computer to connect to</source>
        <translation>Name des Rechners, mit dem verbunden wird</translation>
    </message>
    <message>
        <source>Connect to </source>
        <translation>Verbinden mit </translation>
    </message>
    <message>
        <source>Connect to remote computer in </source>
        <translation>Mit entferntem Rechner verbinden in </translation>
    </message>
    <message>
        <source>Connect to server in </source>
        <translation>Mit Server verbinden in </translation>
    </message>
    <message>
        <source>Connect to Computer</source>
        <translation>Mit Rechner verbinden</translation>
    </message>
    <message>
        <source>Disconnect from Remote Computer</source>
        <translation>Von entferntem Rechner trennen</translation>
    </message>
    <message>
        <source>The remote computer to disconnect from</source>
        <translation>Der entfernte Rechner, von dem getrennt wird</translation>
    </message>
    <message>
        <source>Name of the computer to disconnect from</source>
        <translation>Name des Rechners, von dem getrennt wird</translation>
    </message>
    <message>
        <source>Disconnect from </source>
        <translation>Trennen von </translation>
    </message>
    <message>
        <source>Disconnect from remote computer in </source>
        <translation>Von entferntem Rechner trennen in </translation>
    </message>
    <message>
        <source>Disconnect from Computer</source>
        <translation>Von Rechner trennen</translation>
    </message>
    <message>
        <source>Start Remote Control</source>
        <translation>Fernsteuerung starten</translation>
    </message>
    <message>
        <source>The computer to start remote controlling</source>
        <translation>Der Rechner, dessen Fernsteuerung beginnt</translation>
    </message>
    <message>
        <source>Name of the computer to control</source>
        <translation>Name des zu steuernden Rechners</translation>
    </message>
    <message>
        <source>Start remote control of </source>
        <translation>Fernsteuerung starten für </translation>
    </message>
    <message>
        <source>Start remote control in </source>
        <translation>Fernsteuerung starten in </translation>
    </message>
    <message>
        <source>Control remote computer in </source>
        <translation>Entfernten Rechner steuern in </translation>
    </message>
    <message>
        <source>Take control of computer in </source>
        <translation>Rechner übernehmen in </translation>
    </message>
    <message>
        <source>Stop Remote Control</source>
        <translation>Fernsteuerung beenden</translation>
    </message>
    <message>
        <source>The computer to stop remote controlling</source>
        <translation>Der Rechner, dessen Fernsteuerung endet</translation>
    </message>
    <message>
        <source>Name of the computer to stop controlling</source>
        <translation>Name des Rechners, dessen Steuerung endet</translation>
    </message>
    <message>
        <source>Stop remote control of </source>
        <translation>Fernsteuerung beenden für </translation>
    </message>
    <message>
        <source>Stop remote control in </source>
        <translation>Fernsteuerung beenden in </translation>
    </message>
    <message>
        <source>Stop controlling computer in </source>
        <translation>Steuerung des Rechners beenden in </translation>
    </message>
    <message>
        <source>Get Computer Status</source>
        <translation>Rechnerstatus abfragen</translation>
    </message>
    <message>
        <source>The computer to check status for</source>
        <translation>Der Rechner, dessen Status geprüft wird</translation>
    </message>
    <message>
        <source>Name of the computer to check</source>
        <translation>Name des zu prüfenden Rechners</translation>
    </message>
    <message>
        <source>Get status of </source>
        <translation>Status abfragen von </translation>
    </message>
    <message>
        <source>Check status in </source>
        <translation>Status prüfen in </translation>
    </message>
    <message>
        <source>Get computer status in </source>
        <translation>Rechnerstatus abfragen in </translation>
    </message>
    <message>
        <source>Check remote computer status in </source>
        <translation>Status des entfernten Rechners prüfen in </translation>
    </message>
    <message>
        <source>Check Computer Status</source>
        <translation>Rechnerstatus prüfen</translation>
    </message>
    <message>
        <source>Upload File</source>
        <translation>Datei hochladen</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>The file to upload</source>
        <translation>Die hochzuladende Datei</translation>
    </message>
    <message>
        <source>The computer to upload the file to</source>
        <translation>Der Rechner, auf den die Datei geladen wird</translation>
    </message>
    <message>
        <source>Name of the computer to upload to</source>
        <translation>Name des Rechners, auf den geladen wird</translation>
    </message>
    <message>
        <source>Upload </source>
        <translation>Hochladen von </translation>
    </message>
    <message>
        <source> to </source>
        <translation> auf </translation>
    </message>
    <message>
        <source>Upload file to </source>
        <translation>Datei hochladen in </translation>
    </message>
    <message>
        <source>Send file to remote computer in </source>
        <translation>Datei an entfernten Rechner senden in </translation>
    </message>
</context>
<context>
    <name>StartRemoteControlIntent</name>
    <message>
        <source>Queued remote control for </source>
        <translation>Fernsteuerung vorgemerkt für </translation>
    </message>
</context>
<context>
    <name>StopRemoteControlIntent</name>
    <message>
        <source>Queued stop remote control for </source>
        <translation>Ende der Fernsteuerung vorgemerkt für </translation>
    </message>
</context>
<context>
    <name>UploadFileIntent</name>
    <message>
        <source>Queued upload of </source>
        <translation>Hochladen vorgemerkt von </translation>
    </message>
    <message>
        <source> to </source>
        <translation> auf </translation>
    </message>
</context>
<context>
    <name>WardlineError</name>
    <message>
        <source>Telvane app is not available</source>
        <translation>Die Telvane-App ist nicht verfügbar</translation>
    </message>
    <message>
        <source>Computer not found</source>
        <translation>Rechner nicht gefunden</translation>
    </message>
    <message>
        <source>File not provided</source>
        <translation>Keine Datei angegeben</translation>
    </message>
</context>
<context>
    <name>telvanectl</name>
    <message>
        <source>Show this help</source>
        <translation>Diese Hilfe anzeigen</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Optionen:</translation>
    </message>
    <message>
        <source>Usage: telvanectl &lt;action&gt; [options]
       telvanectl &apos;&lt;phrase&gt;&apos; [options]

Queues requests for the Telvane console, which carries them out while it runs
or at its next start. telvanectl itself never contacts a computer.

Actions:
</source>
        <translation>Aufruf: telvanectl &lt;Aktion&gt; [Optionen]
        telvanectl &apos;&lt;Satz&gt;&apos; [Optionen]

Merkt Aufträge für die Telvane-Konsole vor, die sie ausführt, solange sie läuft,
oder bei ihrem nächsten Start. telvanectl selbst kontaktiert nie einen Rechner.

Aktionen:
</translation>
    </message>
    <message>
        <source>List the stored computers (id and name)</source>
        <translation>Die gespeicherten Rechner auflisten (ID und Name)</translation>
    </message>
    <message>
        <source>List the phrases that name the actions</source>
        <translation>Die Sätze auflisten, die die Aktionen nennen</translation>
    </message>
    <message>
        <source>Run &apos;telvanectl &lt;action&gt; --help&apos; for an action&apos;s options.</source>
        <translation>&apos;telvanectl &lt;Aktion&gt; --help&apos; zeigt die Optionen einer Aktion.</translation>
    </message>
    <message>
        <source>Usage:</source>
        <translation>Aufruf:</translation>
    </message>
    <message>
        <source>COMPUTER</source>
        <translation>RECHNER</translation>
    </message>
    <message>
        <source>(its id, as &apos;telvanectl computers&apos; lists it)</source>
        <translation>(seine ID, wie &apos;telvanectl computers&apos; sie auflistet)</translation>
    </message>
    <message>
        <source>(any part of its name, ignoring case; the first match wins)</source>
        <translation>(ein beliebiger Teil des Namens, ohne Groß-/Kleinschreibung; der erste Treffer gilt)</translation>
    </message>
    <message>
        <source>Without a computer, one line per stored computer is printed.</source>
        <translation>Ohne Rechner wird je gespeichertem Rechner eine Zeile ausgegeben.</translation>
    </message>
    <message>
        <source>When both --computer and --computer-name are given, --computer wins.</source>
        <translation>Sind --computer und --computer-name beide angegeben, gilt --computer.</translation>
    </message>
    <message>
        <source>Phrases (%1):</source>
        <translation>Sätze (%1):</translation>
    </message>
    <message>
        <source>Usage: telvanectl computers

Lists the stored computers, one per line: the id, a tab and the name.
</source>
        <translation>Aufruf: telvanectl computers

Listet die gespeicherten Rechner auf, einen je Zeile: die ID, ein Tabulator und der Name.
</translation>
    </message>
    <message>
        <source>&apos;computers&apos; takes no arguments</source>
        <translation>&apos;computers&apos; nimmt keine Argumente</translation>
    </message>
    <message>
        <source>Run &apos;telvanectl computers --help&apos;.</source>
        <translation>Siehe &apos;telvanectl computers --help&apos;.</translation>
    </message>
    <message>
        <source>Usage: telvanectl phrases

Lists the phrases that name an action, one per line: the phrase, a tab and the action&apos;s short title.
</source>
        <translation>Aufruf: telvanectl phrases

Listet die Sätze auf, die eine Aktion nennen, einen je Zeile: der Satz, ein Tabulator und der Kurztitel der Aktion.
</translation>
    </message>
    <message>
        <source>&apos;phrases&apos; takes no arguments</source>
        <translation>&apos;phrases&apos; nimmt keine Argumente</translation>
    </message>
    <message>
        <source>Run &apos;telvanectl phrases --help&apos;.</source>
        <translation>Siehe &apos;telvanectl phrases --help&apos;.</translation>
    </message>
    <message>
        <source>Run &apos;telvanectl %1 --help&apos;.</source>
        <translation>Siehe &apos;telvanectl %1 --help&apos;.</translation>
    </message>
    <message>
        <source>unexpected argument &apos;%1&apos;</source>
        <translation>unerwartetes Argument &apos;%1&apos;</translation>
    </message>
    <message>
        <source>no action given</source>
        <translation>keine Aktion angegeben</translation>
    </message>
    <message>
        <source>no action has the phrase &apos;%1&apos;; the phrases are:</source>
        <translation>keine Aktion hat den Satz &apos;%1&apos;; die Sätze sind:</translation>
    </message>
    <message>
        <source>unknown action &apos;%1&apos;</source>
        <translation>unbekannte Aktion &apos;%1&apos;</translation>
    </message>
</context>
</TS>
