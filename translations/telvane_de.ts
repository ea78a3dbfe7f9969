<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AboutLogoView</name>
    <message>
        <source>Quorvel</source>
        <translation>Quorvel</translation>
    </message>
</context>
<context>
    <name>AboutView</name>
    <message>
        <source>Website</source>
        <translation>Website</translation>
    </message>
    <message>
        <source>Community</source>
        <translation>Community</translation>
    </message>
    <message>
        <source>FAQs</source>
        <translation>FAQ</translation>
    </message>
    <message>
        <source>Feature Request</source>
        <translation>Funktionswunsch</translation>
    </message>
    <message>
        <source>Bug report</source>
        <translation>Fehlerbericht</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>Nach Updates suchen...</translation>
    </message>
    <message>
        <source>Telvane</source>
        <translation>Telvane</translation>
    </message>
    <message>
        <source>Made by</source>
        <translation>Entwickelt von</translation>
    </message>
</context>
<context>
    <name>AboutWindowController</name>
    <message>
        <source>About Telvane</source>
        <translation>Über Telvane</translation>
    </message>
</context>
<context>
    <name>AddComputerDialog</name>
    <message>
        <source>Add Remote Computer or Server</source>
        <translation>Entfernten Computer oder Server hinzufügen</translation>
    </message>
    <message>
        <source>TelvaneAgent background app should be installed and configured on the remote configuration (freeware)</source>
        <translation>Die Hintergrund-App TelvaneAgent muss auf dem entfernten Computer installiert und eingerichtet sein (Freeware)</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Add Now</source>
        <translation>Jetzt hinzufügen</translation>
    </message>
    <message>
        <source>Search again</source>
        <translation>Erneut suchen</translation>
    </message>
    <message>
        <source>Add custom computer or server...</source>
        <translation>Eigenen Computer oder Server hinzufügen...</translation>
    </message>
    <message>
        <source>Custom Computer or Server Information</source>
        <translation>Angaben zum eigenen Computer oder Server</translation>
    </message>
    <message>
        <source>Computer Name (optional)</source>
        <translation>Computername (optional)</translation>
    </message>
    <message>
        <source>Computer IP Address</source>
        <translation>IP-Adresse des Computers</translation>
    </message>
    <message>
        <source>Used Port Number</source>
        <translation>Verwendete Portnummer</translation>
    </message>
    <message>
        <source>Cancel custom entry</source>
        <translation>Eigenen Eintrag verwerfen</translation>
    </message>
    <message>
        <source>Authentication</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>Enter the username and password of the logged-in account on the remote Mac.</source>
        <translation>Geben Sie Benutzername und Passwort des angemeldeten Kontos auf dem entfernten Mac ein.</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
</context>
<context>
    <name>AddComputerView</name>
    <message>
        <source>Computers or servers found on your local network</source>
        <translation>In Ihrem lokalen Netzwerk gefundene Computer und Server</translation>
    </message>
    <message>
        <source>Searching...</source>
        <translation>Suche läuft...</translation>
    </message>
    <message>
        <source>Searching for computers or servers...</source>
        <translation>Suche nach Computern und Servern...</translation>
    </message>
    <message>
        <source>No new computers or servers found</source>
        <translation>Keine neuen Computer oder Server gefunden</translation>
    </message>
</context>
<context>
    <name>AssistantContentView</name>
    <message>
        <source>The assistant cannot be shown on this system.</source>
        <translation>Der Assistent kann auf diesem System nicht angezeigt werden.</translation>
    </message>
</context>
<context>
    <name>AssistantWebView</name>
    <message>
        <source>Assistant chat</source>
        <translation>Chat mit dem Assistenten</translation>
    </message>
</context>
<context>
    <name>AssistantWindowController</name>
    <message>
        <source>AI Assistant</source>
        <translation>KI-Assistent</translation>
    </message>
</context>
<context>
    <name>ByteCountFormat</name>
    <message>
        <source>MB</source>
        <translation>MB</translation>
    </message>
    <message>
        <source>GB</source>
        <translation>GB</translation>
    </message>
    <message>
        <source>TB</source>
        <translation>TB</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
</context>
<context>
    <name>ComputerCardContent</name>
    <message>
        <source>Unknown Computer</source>
        <translation>Unbekannter Computer</translation>
    </message>
    <message>
        <source>Last connected %1</source>
        <translation>Zuletzt verbunden %1</translation>
    </message>
</context>
<context>
    <name>ComputerCardView</name>
    <message>
        <source>Show details</source>
        <translation>Details anzeigen</translation>
    </message>
    <message>
        <source>No technical specs</source>
        <translation>Keine technischen Daten</translation>
    </message>
    <message>
        <source>Connect to collect live technical specs</source>
        <translation>Verbinden, um aktuelle technische Daten zu erhalten</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>ComputerDetailView</name>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Detail sections</source>
        <translation>Detailbereiche</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Computer</translation>
    </message>
    <message>
        <source>Upload progress</source>
        <translation>Fortschritt des Hochladens</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancel upload</source>
        <translation>Hochladen abbrechen</translation>
    </message>
    <message>
        <source>Technical Status</source>
        <translation>Technischer Status</translation>
    </message>
    <message>
        <source>No technical specs</source>
        <translation>Keine technischen Daten</translation>
    </message>
    <message>
        <source>No technical specs yet</source>
        <translation>Noch keine technischen Daten</translation>
    </message>
    <message>
        <source>Connect to this Mac to start receiving CPU, memory, disk, OS, model, and active app details.</source>
        <translation>Verbinden Sie sich mit diesem Mac, um Angaben zu CPU, Arbeitsspeicher, Festplatte, Betriebssystem, Modell und aktiver App zu erhalten.</translation>
    </message>
    <message>
        <source>Update Preview</source>
        <translation>Vorschau aktualisieren</translation>
    </message>
    <message>
        <source>Upload File</source>
        <translation>Datei hochladen</translation>
    </message>
</context>
<context>
    <name>ComputerListView</name>
    <message>
        <source>Dashboard</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Logs</source>
        <translation>Protokolle</translation>
    </message>
    <message>
        <source>Telvane</source>
        <translation>Telvane</translation>
    </message>
    <message>
        <source>Monitored</source>
        <translation>Überwacht</translation>
    </message>
    <message>
        <source>Monitored computers</source>
        <translation>Überwachte Computer</translation>
    </message>
    <message>
        <source>Add...</source>
        <translation>Hinzufügen...</translation>
    </message>
    <message>
        <source>Edit...</source>
        <translation>Bearbeiten...</translation>
    </message>
    <message>
        <source>Delete...</source>
        <translation>Löschen...</translation>
    </message>
</context>
<context>
    <name>ComputerPreviewViewSnapshot</name>
    <message>
        <source>Starting connection...</source>
        <translation>Verbindung wird aufgebaut...</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>Verbindung läuft...</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Verbinden</translation>
    </message>
    <message>
        <source>Remote Control</source>
        <translation>Fernsteuerung</translation>
    </message>
    <message>
        <source>Upload File</source>
        <translation>Datei hochladen</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Live data from the connected Mac</source>
        <translation>Live-Daten des verbundenen Mac</translation>
    </message>
    <message>
        <source>Last known data is shown when available</source>
        <translation>Die zuletzt bekannten Daten werden angezeigt, sofern vorhanden</translation>
    </message>
    <message>
        <source>Uploading: %1</source>
        <translation>Wird hochgeladen: %1</translation>
    </message>
    <message>
        <source>Remove Computer</source>
        <translation>Computer entfernen</translation>
    </message>
    <message>
        <source>Are you sure you want to remove &apos;%1&apos;? This action cannot be undone.</source>
        <translation>Möchten Sie „%1“ wirklich entfernen? Dies kann nicht rückgängig gemacht werden.</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>ConsoleOptions</name>
    <message>
        <source>Usage: %1 [options]</source>
        <translation>Aufruf: %1 [Optionen]</translation>
    </message>
    <message>
        <source>Telvane console: supervise the computers of your fleet.</source>
        <translation>Telvane-Konsole: Überwachen Sie die Computer Ihrer Geräteflotte.</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>Optionen:</translation>
    </message>
    <message>
        <source>Qt&apos;s own options (-platform, -display, -style and the like) are passed on to Qt.</source>
        <translation>Die Optionen von Qt (-platform, -display, -style und ähnliche) werden an Qt weitergereicht.</translation>
    </message>
    <message>
        <source>Show this help and exit.</source>
        <translation>Diese Hilfe anzeigen und beenden.</translation>
    </message>
    <message>
        <source>Show the version and exit.</source>
        <translation>Die Version anzeigen und beenden.</translation>
    </message>
    <message>
        <source>Add this computer (a JSON record) when the list is empty.</source>
        <translation>Diesen Computer (einen JSON-Datensatz) hinzufügen, wenn die Liste leer ist.</translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>Nach „%1“ fehlt ein Wert.</translation>
    </message>
    <message>
        <source>Try &apos;%1 --help&apos;.</source>
        <translation>Versuchen Sie „%1 --help“.</translation>
    </message>
    <message>
        <source>--crash-report takes no other argument.</source>
        <translation>--crash-report nimmt kein weiteres Argument an.</translation>
    </message>
    <message>
        <source>Unexpected argument: %1</source>
        <translation>Unerwartetes Argument: %1</translation>
    </message>
    <message>
        <source>no display to show the console on (DISPLAY and WAYLAND_DISPLAY are unset); start it from a desktop session or under xvfb-run -a</source>
        <translation>keine Anzeige für die Konsole (DISPLAY und WAYLAND_DISPLAY sind nicht gesetzt); starten Sie sie aus einer Desktop-Sitzung oder mit xvfb-run -a</translation>
    </message>
</context>
<context>
    <name>CrashReporter</name>
    <message>
        <source>Application Error</source>
        <translation>Anwendungsfehler</translation>
    </message>
    <message>
        <source>The application encountered an unexpected error.

The developer team at Quorvel has been automatically notified of this crash and will work on a fix as soon as possible.

An update of the app will be available very soon.

Send an email to %1 to be notified asap.</source>
        <translation>In der Anwendung ist ein unerwarteter Fehler aufgetreten.

Das Entwicklerteam von Quorvel wurde automatisch über diesen Absturz informiert und arbeitet so schnell wie möglich an einer Lösung.

Ein Update der App wird in Kürze verfügbar sein.

Schreiben Sie eine E-Mail an %1, um schnellstmöglich benachrichtigt zu werden.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>DashboardScreenPreview</name>
    <message>
        <source>Screen</source>
        <translation>Bildschirm</translation>
    </message>
    <message>
        <source>Screen Preview</source>
        <translation>Bildschirmvorschau</translation>
    </message>
    <message>
        <source>No preview available</source>
        <translation>Keine Vorschau verfügbar</translation>
    </message>
    <message>
        <source>Connect to view screen</source>
        <translation>Verbinden, um den Bildschirm zu sehen</translation>
    </message>
</context>
<context>
    <name>DashboardSummary</name>
    <message>
        <source>Total Macs</source>
        <translation>Macs gesamt</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Getrennt</translation>
    </message>
    <message>
        <source>Connection Issues</source>
        <translation>Verbindungsprobleme</translation>
    </message>
</context>
<context>
    <name>DashboardView</name>
    <message>
        <source>Summary Tiles</source>
        <translation>Übersichtskacheln</translation>
    </message>
    <message>
        <source>Health Metrics</source>
        <translation>Zustandswerte</translation>
    </message>
    <message>
        <source>Technical Specs</source>
        <translation>Technische Daten</translation>
    </message>
    <message>
        <source>Screen Preview</source>
        <translation>Bildschirmvorschau</translation>
    </message>
    <message>
        <source>Dashboard</source>
        <translation>Übersicht</translation>
    </message>
    <message>
        <source>Overview of all configured computers and servers</source>
        <translation>Alle eingerichteten Computer und Server auf einen Blick</translation>
    </message>
    <message>
        <source>Display Options</source>
        <translation>Anzeigeoptionen</translation>
    </message>
    <message>
        <source>No computers</source>
        <translation>Keine Computer</translation>
    </message>
    <message>
        <source>No computers or servers configured</source>
        <translation>Keine Computer oder Server eingerichtet</translation>
    </message>
    <message>
        <source>Add a computer or server to get started with remote control</source>
        <translation>Fügen Sie einen Computer oder Server hinzu, um mit der Fernsteuerung zu beginnen</translation>
    </message>
    <message>
        <source>TelvaneAgent freeware is required on each monitored computer</source>
        <translation>Auf jedem überwachten Computer wird die Freeware TelvaneAgent benötigt</translation>
    </message>
    <message>
        <source>Download link is available from the Help menu</source>
        <translation>Den Download-Link finden Sie im Menü Hilfe</translation>
    </message>
</context>
<context>
    <name>DateTimeText</name>
    <message>
        <source>%1 at %2</source>
        <translation>%1 um %2</translation>
    </message>
</context>
<context>
    <name>DiskImageDownloadSession</name>
    <message>
        <source>The download cannot run here: %1.</source>
        <translation>Der Download ist hier nicht möglich: %1.</translation>
    </message>
    <message>
        <source>Download could not start (internal error).</source>
        <translation>Der Download konnte nicht gestartet werden (interner Fehler).</translation>
    </message>
    <message>
        <source>Could not access your Downloads folder.</source>
        <translation>Auf Ihren Download-Ordner konnte nicht zugegriffen werden.</translation>
    </message>
    <message>
        <source>Download finished but the file location is unknown.</source>
        <translation>Der Download ist abgeschlossen, aber der Speicherort der Datei ist unbekannt.</translation>
    </message>
    <message>
        <source>The download was interrupted.</source>
        <translation>Der Download wurde unterbrochen.</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>Die Anfrage hat zu lange gedauert.</translation>
    </message>
</context>
<context>
    <name>DownloadProgressContent</name>
    <message>
        <source>Preparing download…</source>
        <translation>Download wird vorbereitet…</translation>
    </message>
    <message>
        <source>Downloading… %1%</source>
        <translation>Wird heruntergeladen… %1%</translation>
    </message>
    <message>
        <source>Download complete</source>
        <translation>Download abgeschlossen</translation>
    </message>
    <message>
        <source>Download failed</source>
        <translation>Download fehlgeschlagen</translation>
    </message>
    <message>
        <source>Download cancelled.</source>
        <translation>Download abgebrochen.</translation>
    </message>
</context>
<context>
    <name>DownloadProgressView</name>
    <message>
        <source>Show in Finder</source>
        <translation>Im Finder zeigen</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>EditComputerDialog</name>
    <message>
        <source>Edit Computer</source>
        <translation>Computer bearbeiten</translation>
    </message>
    <message>
        <source>Computer Name (optional)</source>
        <translation>Computername (optional)</translation>
    </message>
    <message>
        <source>Remote IP Address</source>
        <translation>Entfernte IP-Adresse</translation>
    </message>
    <message>
        <source>Default ZEKT port: 5905</source>
        <translation>Standardport für ZEKT: 5905</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>Use the username and password of the logged-in account on the remote Mac.</source>
        <translation>Verwenden Sie Benutzername und Passwort des angemeldeten Kontos auf dem entfernten Mac.</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>ZEKT uses built-in encryption for all communications</source>
        <translation>ZEKT verschlüsselt die gesamte Kommunikation selbst</translation>
    </message>
    <message>
        <source>No additional TLS configuration required</source>
        <translation>Keine zusätzliche TLS-Einrichtung nötig</translation>
    </message>
    <message>
        <source>Description (optional)</source>
        <translation>Beschreibung (optional)</translation>
    </message>
    <message>
        <source>Tags (comma-separated)</source>
        <translation>Schlagwörter (durch Kommas getrennt)</translation>
    </message>
    <message>
        <source>Basic Information</source>
        <translation>Grundangaben</translation>
    </message>
    <message>
        <source>Authentication</source>
        <translation>Anmeldung</translation>
    </message>
    <message>
        <source>Security</source>
        <translation>Sicherheit</translation>
    </message>
    <message>
        <source>Additional Information</source>
        <translation>Weitere Angaben</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Save Changes</source>
        <translation>Änderungen sichern</translation>
    </message>
</context>
<context>
    <name>EditComputerView</name>
    <message>
        <source>Configure connection settings for </source>
        <translation>Verbindungseinstellungen festlegen für </translation>
    </message>
    <message>
        <source>Host IP address is required</source>
        <translation>Die IP-Adresse des Hosts ist erforderlich</translation>
    </message>
    <message>
        <source>Port must be a number between 1 and 65535</source>
        <translation>Der Port muss eine Zahl zwischen 1 und 65535 sein</translation>
    </message>
    <message>
        <source>Username is required</source>
        <translation>Der Benutzername ist erforderlich</translation>
    </message>
    <message>
        <source>Password is required</source>
        <translation>Das Passwort ist erforderlich</translation>
    </message>
</context>
<context>
    <name>FrameRateScale</name>
    <message>
        <source>%1 FPS</source>
        <translation>%1 FPS</translation>
    </message>
</context>
<context>
    <name>FrameRateSlider</name>
    <message>
        <source>Frame rate</source>
        <translation>Bildrate</translation>
    </message>
    <message>
        <source>Frames per second of the remote screen</source>
        <translation>Bilder pro Sekunde des entfernten Bildschirms</translation>
    </message>
</context>
<context>
    <name>HealthStatus</name>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Verbindet</translation>
    </message>
    <message>
        <source>Issue</source>
        <translation>Problem</translation>
    </message>
    <message>
        <source>Offline</source>
        <translation>Offline</translation>
    </message>
</context>
<context>
    <name>HelpMenu</name>
    <message>
        <source>Download TelvaneAgent (freeware)</source>
        <translation>TelvaneAgent herunterladen (Freeware)</translation>
    </message>
    <message>
        <source>AI Assistant</source>
        <translation>KI-Assistent</translation>
    </message>
    <message>
        <source>Community</source>
        <translation>Community</translation>
    </message>
    <message>
        <source>Frequently Asked Questions</source>
        <translation>Häufig gestellte Fragen</translation>
    </message>
    <message>
        <source>Share a Bug Report</source>
        <translation>Fehlerbericht senden</translation>
    </message>
    <message>
        <source>Send a Feature Request</source>
        <translation>Funktionswunsch senden</translation>
    </message>
    <message>
        <source>About Telvane</source>
        <translation>Über Telvane</translation>
    </message>
</context>
<context>
    <name>ITInventory</name>
    <message>
        <source>Asset Identity</source>
        <translation>Geräteidentität</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>Seriennummer</translation>
    </message>
    <message>
        <source>Hardware UUID</source>
        <translation>Hardware-UUID</translation>
    </message>
    <message>
        <source>Security Posture</source>
        <translation>Sicherheitslage</translation>
    </message>
    <message>
        <source>FileVault</source>
        <translation>FileVault</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Aktiviert</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>Deaktiviert</translation>
    </message>
    <message>
        <source>Gatekeeper</source>
        <translation>Gatekeeper</translation>
    </message>
    <message>
        <source>MDM Enrollment</source>
        <translation>MDM-Registrierung</translation>
    </message>
    <message>
        <source>Enrolled</source>
        <translation>Registriert</translation>
    </message>
    <message>
        <source>Not Enrolled</source>
        <translation>Nicht registriert</translation>
    </message>
    <message>
        <source>Power &amp; Boot</source>
        <translation>Energie und Start</translation>
    </message>
    <message>
        <source>Last Boot</source>
        <translation>Letzter Start</translation>
    </message>
    <message>
        <source>Last Sleep</source>
        <translation>Letzter Ruhezustand</translation>
    </message>
    <message>
        <source>Last Wake</source>
        <translation>Letztes Aufwachen</translation>
    </message>
    <message>
        <source>Disk Volumes</source>
        <translation>Festplattenvolumes</translation>
    </message>
    <message>
        <source>%1 free of %2</source>
        <translation>%1 von %2 frei</translation>
    </message>
</context>
<context>
    <name>ITInventoryDetailSection</name>
    <message>
        <source>IT Inventory</source>
        <translation>IT-Inventar</translation>
    </message>
</context>
<context>
    <name>LaunchAnimationOverlay</name>
    <message>
        <source>Telvane launch animation</source>
        <translation>Startanimation von Telvane</translation>
    </message>
</context>
<context>
    <name>LogsView</name>
    <message>
        <source>Logs</source>
        <translation>Protokolle</translation>
    </message>
    <message>
        <source>Logging Active</source>
        <translation>Protokollierung aktiv</translation>
    </message>
    <message>
        <source>Copy All</source>
        <translation>Alles kopieren</translation>
    </message>
    <message>
        <source>Clear Logs</source>
        <translation>Protokolle leeren</translation>
    </message>
    <message>
        <source>Log entries</source>
        <translation>Protokolleinträge</translation>
    </message>
    <message>
        <source>No log entries</source>
        <translation>Keine Protokolleinträge</translation>
    </message>
    <message>
        <source>%1 log entries</source>
        <translation>%1 Protokolleinträge</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Telvane</source>
        <translation>Telvane</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Einstellungen...</translation>
    </message>
    <message>
        <source>Ctrl+,</source>
        <translation>Ctrl+,</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
</context>
<context>
    <name>MainWindowState</name>
    <message>
        <source>Delete Computer</source>
        <translation>Computer löschen</translation>
    </message>
    <message>
        <source>Are you sure you want to delete &apos;%1&apos;? This action cannot be undone.</source>
        <translation>Möchten Sie „%1“ wirklich löschen? Dies kann nicht rückgängig gemacht werden.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>MetricGauge</name>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Arbeitsspeicher</translation>
    </message>
    <message>
        <source>Disk</source>
        <translation>Festplatte</translation>
    </message>
</context>
<context>
    <name>RemoteControlView</name>
    <message>
        <source>Remote control</source>
        <translation>Fernsteuerung</translation>
    </message>
</context>
<context>
    <name>RemoteControlViewController</name>
    <message>
        <source>Session controls</source>
        <translation>Sitzungssteuerung</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>Verbindung läuft...</translation>
    </message>
    <message>
        <source>Session status</source>
        <translation>Sitzungsstatus</translation>
    </message>
    <message>
        <source>Frame Rate:</source>
        <translation>Bildrate:</translation>
    </message>
    <message>
        <source>Chosen frame rate</source>
        <translation>Gewählte Bildrate</translation>
    </message>
    <message>
        <source>Remote control is active</source>
        <translation>Fernsteuerung ist aktiv</translation>
    </message>
    <message>
        <source>Timed out waiting for the remote Mac connection</source>
        <translation>Zeitüberschreitung beim Warten auf die Verbindung zum entfernten Mac</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Connection failed: </source>
        <translation>Verbindung fehlgeschlagen: </translation>
    </message>
    <message>
        <source>Disconnected: %1</source>
        <translation>Getrennt: %1</translation>
    </message>
    <message>
        <source>Disconnected from %1</source>
        <translation>Von %1 getrennt</translation>
    </message>
    <message>
        <source>Connected - Screen: %1x%2</source>
        <translation>Verbunden - Bildschirm: %1x%2</translation>
    </message>
    <message>
        <source>Streaming at %1</source>
        <translation>Übertragung mit %1</translation>
    </message>
    <message>
        <source>Updating preview...</source>
        <translation>Vorschau wird aktualisiert...</translation>
    </message>
</context>
<context>
    <name>RemoteControlWindowController</name>
    <message>
        <source>Remote Control - </source>
        <translation>Fernsteuerung - </translation>
    </message>
</context>
<context>
    <name>RemoteFrameView</name>
    <message>
        <source>Remote screen</source>
        <translation>Entfernter Bildschirm</translation>
    </message>
    <message>
        <source>The screen of the remote computer; pointer and keys act on it</source>
        <translation>Der Bildschirm des entfernten Computers; Zeiger und Tasten wirken auf ihn</translation>
    </message>
</context>
<context>
    <name>SetAsideReporter</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Your computer list could not be read</source>
        <translation>Ihre Computerliste konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>The computer list stored in Telvane&apos;s settings could not be read, so it is not shown. A copy of the settings file was kept at:

%1

The next change to your computer list replaces the stored one; the copy stays.</source>
        <translation>Die in den Einstellungen von Telvane gespeicherte Computerliste konnte nicht gelesen werden und wird daher nicht angezeigt. Eine Kopie der Einstellungsdatei wurde hier aufbewahrt:

%1

Die nächste Änderung Ihrer Computerliste ersetzt die gespeicherte; die Kopie bleibt erhalten.</translation>
    </message>
    <message>
        <source>Telvane&apos;s settings file could not be read</source>
        <translation>Die Einstellungsdatei von Telvane konnte nicht gelesen werden</translation>
    </message>
    <message>
        <source>It was moved aside, unchanged, to:

%1

Telvane starts with a new file: your computer list is empty.</source>
        <translation>Sie wurde unverändert verschoben nach:

%1

Telvane beginnt mit einer neuen Datei: Ihre Computerliste ist leer.</translation>
    </message>
</context>
<context>
    <name>SettingsView</name>
    <message>
        <source>OS</source>
        <translation>Betriebssystem</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Arbeitsspeicher</translation>
    </message>
    <message>
        <source>Disk Free</source>
        <translation>Freier Speicher</translation>
    </message>
    <message>
        <source>Uptime</source>
        <translation>Laufzeit</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>IP-Adresse</translation>
    </message>
    <message>
        <source>Logged-In User</source>
        <translation>Angemeldeter Benutzer</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>Displays</source>
        <translation>Bildschirme</translation>
    </message>
    <message>
        <source>Main Resolution</source>
        <translation>Hauptauflösung</translation>
    </message>
    <message>
        <source>Agent Version</source>
        <translation>Agent-Version</translation>
    </message>
    <message>
        <source>Lock Status</source>
        <translation>Sperrstatus</translation>
    </message>
    <message>
        <source>Screen Access</source>
        <translation>Bildschirmzugriff</translation>
    </message>
    <message>
        <source>Remote Control</source>
        <translation>Fernsteuerung</translation>
    </message>
    <message>
        <source>Front App</source>
        <translation>Aktive App</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Supervision</source>
        <translation>Überwachung</translation>
    </message>
    <message>
        <source>Keep all computers connected</source>
        <translation>Alle Computer verbunden halten</translation>
    </message>
    <message>
        <source>Telvane will periodically connect to every configured machine to refresh monitoring data and mark unreachable machines as offline.</source>
        <translation>Telvane verbindet sich regelmäßig mit jedem eingerichteten Rechner, um die Überwachungsdaten aufzufrischen, und markiert nicht erreichbare Rechner als offline.</translation>
    </message>
    <message>
        <source>Displayed Pills</source>
        <translation>Angezeigte Merkmale</translation>
    </message>
</context>
<context>
    <name>SpecPillView</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>StatusFactTile</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>StatusFacts</name>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Memory Used</source>
        <translation>Belegter Arbeitsspeicher</translation>
    </message>
    <message>
        <source>Disk Used</source>
        <translation>Belegter Speicher</translation>
    </message>
    <message>
        <source>Disk Free</source>
        <translation>Freier Speicher</translation>
    </message>
</context>
<context>
    <name>SummaryTileView</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
</context>
<context>
    <name>TechnicalSpecPills</name>
    <message>
        <source>Allowed</source>
        <translation>Erlaubt</translation>
    </message>
    <message>
        <source>Needs Permission</source>
        <translation>Braucht Erlaubnis</translation>
    </message>
    <message>
        <source>OS</source>
        <translation>Betriebssystem</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modell</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Arbeitsspeicher</translation>
    </message>
    <message>
        <source>Disk Free</source>
        <translation>Freier Speicher</translation>
    </message>
    <message>
        <source>Uptime</source>
        <translation>Laufzeit</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>IP-Adresse</translation>
    </message>
    <message>
        <source>Logged-In User</source>
        <translation>Angemeldet als</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>Displays</source>
        <translation>Bildschirme</translation>
    </message>
    <message>
        <source>Main Resolution</source>
        <translation>Hauptauflösung</translation>
    </message>
    <message>
        <source>Agent</source>
        <translation>Agent</translation>
    </message>
    <message>
        <source>Agent Version</source>
        <translation>Agent-Version</translation>
    </message>
    <message>
        <source>Lock Status</source>
        <translation>Sperrstatus</translation>
    </message>
    <message>
        <source>Locked</source>
        <translation>Gesperrt</translation>
    </message>
    <message>
        <source>Unlocked</source>
        <translation>Entsperrt</translation>
    </message>
    <message>
        <source>Screen Access</source>
        <translation>Bildschirmzugriff</translation>
    </message>
    <message>
        <source>Remote Control</source>
        <translation>Fernsteuerung</translation>
    </message>
    <message>
        <source>Front App</source>
        <translation>Aktive App</translation>
    </message>
</context>
<context>
    <name>ThumbnailView</name>
    <message>
        <source>Screen preview</source>
        <translation>Bildschirmvorschau</translation>
    </message>
</context>
<context>
    <name>UpdateCheckCoordinator</name>
    <message>
        <source>Couldn&apos;t Check for Updates</source>
        <translation>Suche nach Updates nicht möglich</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>No Updates Available</source>
        <translation>Keine Updates verfügbar</translation>
    </message>
    <message>
        <source>You are running the latest version of Telvane.</source>
        <translation>Sie verwenden die neueste Version von Telvane.</translation>
    </message>
    <message>
        <source>The download link for this update is missing or invalid.</source>
        <translation>Der Download-Link für dieses Update fehlt oder ist ungültig.</translation>
    </message>
</context>
<context>
    <name>UpdateChecker</name>
    <message>
        <source>Invalid update feed URL.</source>
        <translation>Ungültige Adresse des Update-Feeds.</translation>
    </message>
    <message>
        <source>The update server returned an error (code %1).</source>
        <translation>Der Update-Server hat einen Fehler gemeldet (Code %1).</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>Die Anfrage hat zu lange gedauert.</translation>
    </message>
    <message>
        <source>No response from the update server.</source>
        <translation>Keine Antwort vom Update-Server.</translation>
    </message>
</context>
<context>
    <name>UpdateDownloadSheet</name>
    <message>
        <source>Download directly in the app</source>
        <translation>Direkt in der App herunterladen</translation>
    </message>
    <message>
        <source>Cancel Download</source>
        <translation>Download abbrechen</translation>
    </message>
    <message>
        <source>Update Available</source>
        <translation>Update verfügbar</translation>
    </message>
    <message>
        <source>Version %1 is ready to download.</source>
        <translation>Version %1 kann heruntergeladen werden.</translation>
    </message>
    <message>
        <source>Release Notes</source>
        <translation>Versionshinweise</translation>
    </message>
    <message>
        <source>Choose how to get the installer.</source>
        <translation>Wählen Sie, wie Sie das Installationsprogramm erhalten möchten.</translation>
    </message>
    <message>
        <source>Open %1</source>
        <translation>%1 öffnen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
</context>
<context>
    <name>UpdateFeed</name>
    <message>
        <source>Invalid update feed format.</source>
        <translation>Ungültiges Format des Update-Feeds.</translation>
    </message>
    <message>
        <source>Could not read the update information.</source>
        <translation>Die Update-Informationen konnten nicht gelesen werden.</translation>
    </message>
</context>
<context>
    <name>UploadDisplayState</name>
    <message>
        <source>Preparing transfer...</source>
        <translation>Übertragung wird vorbereitet...</translation>
    </message>
    <message>
        <source>Transfer cancelled</source>
        <translation>Übertragung abgebrochen</translation>
    </message>
</context>
<context>
    <name>UptimeFormat</name>
    <message>
        <source>%1d %2h</source>
        <translation>%1 T. %2 Std.</translation>
    </message>
    <message>
        <source>%1h %2m</source>
        <translation>%1 Std. %2 Min.</translation>
    </message>
    <message>
        <source>%1m</source>
        <translation>%1 Min.</translation>
    </message>
</context>
<context>
    <name>ZEKTManager</name>
    <message>
        <source>Network Access Required</source>
        <translation>Netzwerkzugriff erforderlich</translation>
    </message>
    <message>
        <source>Unable to connect to </source>
        <translation>Verbindung nicht möglich zu </translation>
    </message>
    <message>
        <source>. This can happen when macOS Local Network permission is disabled or the computer is unreachable.

To check Local Network permission:
1. Go to System Settings &gt; Privacy &amp; Security &gt; Local Network
2. Find &apos;Telvane&apos; in the list
3. Enable local network access
4. Try connecting again</source>
        <translation>. Das kann passieren, wenn die macOS-Berechtigung „Lokales Netzwerk“ ausgeschaltet oder der Computer nicht erreichbar ist.

So prüfen Sie die Berechtigung „Lokales Netzwerk“:
1. Öffnen Sie Systemeinstellungen &gt; Datenschutz &amp; Sicherheit &gt; Lokales Netzwerk
2. Suchen Sie „Telvane“ in der Liste
3. Erlauben Sie den Zugriff auf das lokale Netzwerk
4. Versuchen Sie erneut, sich zu verbinden</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <translation>Systemeinstellungen öffnen</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Server Identity Changed</source>
        <translation>Identität des Servers geändert</translation>
    </message>
    <message>
        <source>The security fingerprint for %1 changed.

Previous: %2…
New: %3…

Only continue if you expect this change (for example after reinstalling TelvaneAgent).</source>
        <translation>Der Sicherheits-Fingerabdruck von %1 hat sich geändert.

Bisher: %2…
Neu: %3…

Fahren Sie nur fort, wenn Sie diese Änderung erwarten (zum Beispiel nach einer Neuinstallation von TelvaneAgent).</translation>
    </message>
    <message>
        <source>Trust New Identity</source>
        <translation>Neuer Identität vertrauen</translation>
    </message>
    <message>
        <source>Reject</source>
        <translation>Ablehnen</translation>
    </message>
</context>
</TS>
