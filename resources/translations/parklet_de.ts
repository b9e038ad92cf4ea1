<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>AboutPane</name>
    <message>
        <source>More from Orvane</source>
        <translation>Mehr von Orvane</translation>
    </message>
</context>
<context>
    <name>AppExclusionListView</name>
    <message>
        <source>Add application</source>
        <translation>Anwendung hinzufügen</translation>
    </message>
    <message>
        <source>Remove application</source>
        <translation>Anwendung entfernen</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
</context>
<context>
    <name>AppearancePane</name>
    <message>
        <source>Appearance</source>
        <translation>Erscheinungsbild</translation>
    </message>
    <message>
        <source>Tint colour</source>
        <translation>Farbe der Tönung</translation>
    </message>
    <message>
        <source>Tint intensity</source>
        <translation>Stärke der Tönung</translation>
    </message>
    <message>
        <source>Shelf item size</source>
        <translation>Größe der Objekte</translation>
    </message>
    <message>
        <source>Window edge</source>
        <translation>Bildschirmrand</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
    <message>
        <source>Top</source>
        <translation>Oben</translation>
    </message>
    <message>
        <source>Bottom</source>
        <translation>Unten</translation>
    </message>
    <message>
        <source>Alignment</source>
        <translation>Ausrichtung</translation>
    </message>
    <message>
        <source>Start</source>
        <extracomment>Along the edge of the screen: its upper or left end.</extracomment>
        <translation>Anfang</translation>
    </message>
    <message>
        <source>Center</source>
        <extracomment>Along the edge of the screen: its middle.</extracomment>
        <translation>Mitte</translation>
    </message>
    <message>
        <source>End</source>
        <extracomment>Along the edge of the screen: its lower or right end.</extracomment>
        <translation>Ende</translation>
    </message>
    <message>
        <source>File names</source>
        <translation>Dateinamen</translation>
    </message>
    <message>
        <source>Show under icon</source>
        <translation>Unter dem Symbol anzeigen</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Show on hover</source>
        <translation>Beim Darüberfahren anzeigen</translation>
    </message>
    <message>
        <source>Hide file extensions</source>
        <translation>Dateiendungen ausblenden</translation>
    </message>
</context>
<context>
    <name>BehaviorPane</name>
    <message>
        <source>Automatically show the drop window</source>
        <translation>Ablagefenster automatisch anzeigen</translation>
    </message>
    <message>
        <source>When you start dragging</source>
        <translation>Sobald eine Datei gezogen wird</translation>
    </message>
    <message>
        <source>Near cursor position when you start dragging</source>
        <translation>Neben dem Zeiger, sobald eine Datei gezogen wird</translation>
    </message>
    <message>
        <source>When dragging towards Parklet&apos;s location</source>
        <translation>Wenn eine Datei in die Nähe von Parklet gezogen wird</translation>
    </message>
    <message>
        <source>When to show the drop window</source>
        <translation>Wann das Ablagefenster angezeigt wird</translation>
    </message>
    <message>
        <source>When double-clicking a shelf file:</source>
        <translation>Beim Doppelklick auf eine Datei:</translation>
    </message>
    <message>
        <source>Open file</source>
        <translation>Datei öffnen</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Alle auswählen</translation>
    </message>
    <message>
        <source>Hide</source>
        <extracomment>Goes on with &quot;The Parklet window in the following applications:&quot;.</extracomment>
        <translation>Ausblenden</translation>
    </message>
    <message>
        <source>Show only in</source>
        <extracomment>Goes on with &quot;The Parklet window in the following applications:&quot;.</extracomment>
        <translation>Nur anzeigen</translation>
    </message>
    <message>
        <source>The Parklet window in the following applications:</source>
        <translation>Parklet-Fenster in den folgenden Anwendungen:</translation>
    </message>
</context>
<context>
    <name>CommandLine</name>
    <message>
        <source>Usage: parklet [OPTION]
A floating shelf for files: drag files onto it, and out of it again where you need them.

  --help     print this help and exit
  --version  print the version and exit
  --show     show the shelf, also when Parklet starts

Without an option Parklet starts, or shows the shelf of the one that runs already.
</source>
        <extracomment>The options and the columns of the list stay as they are; [OPTION] may be translated.</extracomment>
        <translation>Aufruf: parklet [OPTION]
Eine schwebende Ablage für Dateien: Dateien daraufziehen und dort wieder herausziehen, wo sie gebraucht werden.

  --help     diese Hilfe ausgeben und beenden
  --version  die Version ausgeben und beenden
  --show     die Ablage anzeigen, auch wenn Parklet erst startet

Ohne Option startet Parklet oder zeigt die Ablage des bereits laufenden Parklet an.
</translation>
    </message>
    <message>
        <source>Try &apos;parklet --help&apos;.</source>
        <translation>Mehr dazu mit „parklet --help“.</translation>
    </message>
    <message>
        <source>unknown option &apos;%1&apos;</source>
        <translation>unbekannte Option „%1“</translation>
    </message>
    <message>
        <source>unexpected argument &apos;%1&apos;</source>
        <translation>unerwartetes Argument „%1“</translation>
    </message>
</context>
<context>
    <name>CursorDropZone</name>
    <message>
        <source>Drop here</source>
        <translation>Hier ablegen</translation>
    </message>
</context>
<context>
    <name>GeneralPane</name>
    <message>
        <source>Start at login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>Show menu bar icon</source>
        <translation>Symbol in der Menüleiste anzeigen</translation>
    </message>
    <message>
        <source>Show Dock icon</source>
        <translation>Symbol im Dock anzeigen</translation>
    </message>
    <message>
        <source>Remove items when dragged out</source>
        <translation>Herausgezogene Objekte entfernen</translation>
    </message>
    <message>
        <source>Automatically add new screenshots</source>
        <translation>Neue Bildschirmfotos automatisch hinzufügen</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Drag mode</source>
        <translation>Beim Herausziehen</translation>
    </message>
    <message>
        <source>Copy files</source>
        <translation>Dateien kopieren</translation>
    </message>
    <message>
        <source>Move files</source>
        <translation>Dateien verschieben</translation>
    </message>
    <message>
        <source>Create alias</source>
        <translation>Alias erstellen</translation>
    </message>
</context>
<context>
    <name>LaunchQuestions</name>
    <message>
        <source>Accessibility Permission Required</source>
        <translation>Zugriff auf die Bedienungshilfen erforderlich</translation>
    </message>
    <message>
        <source>Parklet needs Accessibility access to detect when you&apos;re dragging files. Please grant access in System Settings.</source>
        <translation>Parklet benötigt Zugriff auf die Bedienungshilfen, um zu erkennen, wann Dateien gezogen werden. Bitte den Zugriff in den Systemeinstellungen erlauben.</translation>
    </message>
    <message>
        <source>Open System Settings</source>
        <translation>Systemeinstellungen öffnen</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>Check for updates automatically?</source>
        <translation>Automatisch nach Aktualisierungen suchen?</translation>
    </message>
    <message>
        <source>Should Parklet automatically check for updates? You can always check manually from the Parklet menu.</source>
        <translation>Soll Parklet automatisch nach Aktualisierungen suchen? Von Hand ist das über das Menü von Parklet jederzeit möglich.</translation>
    </message>
    <message>
        <source>Automatically download and install updates</source>
        <translation>Aktualisierungen automatisch herunterladen und installieren</translation>
    </message>
    <message>
        <source>Check Automatically</source>
        <translation>Automatisch suchen</translation>
    </message>
    <message>
        <source>Don&apos;t Check</source>
        <translation>Nicht suchen</translation>
    </message>
</context>
<context>
    <name>MainMenu</name>
    <message>
        <source>Edit</source>
        <extracomment>This menu is shown on macOS only, so please use Apple&apos;s words in it.</extracomment>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Widerrufen</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einsetzen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>Obstacle</name>
    <message>
        <source>DISPLAY is not set; Parklet needs an X server, or XWayland in a Wayland session</source>
        <translation>DISPLAY ist nicht gesetzt; Parklet braucht einen X-Server oder in einer Wayland-Sitzung XWayland</translation>
    </message>
    <message>
        <source>cannot connect to the X server &quot;%1&quot; that DISPLAY names</source>
        <translation>keine Verbindung zum X-Server „%1“, den DISPLAY nennt</translation>
    </message>
    <message>
        <source>another Parklet of this session does not answer; end it, and start this one again</source>
        <translation>ein anderes Parklet dieser Sitzung antwortet nicht; dieses nach dessen Ende erneut starten</translation>
    </message>
</context>
<context>
    <name>PreferencesWindowController</name>
    <message>
        <source>Parklet Preferences</source>
        <translation>Parklet-Einstellungen</translation>
    </message>
</context>
<context>
    <name>ShelfAccessibility</name>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
</context>
<context>
    <name>ShelfPanel</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Alle auswählen</translation>
    </message>
    <message>
        <source>Clear all</source>
        <translation>Alle entfernen</translation>
    </message>
    <message>
        <source>Drop files here</source>
        <extracomment>The shelf may be as narrow as 92 points: please use two short words or three.</extracomment>
        <translation>Hier ablegen</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Clear all files?</source>
        <translation>Alle Dateien entfernen?</translation>
    </message>
    <message numerus="yes">
        <source>This will remove all %n files from the shelf.</source>
        <extracomment>Asked of two files or more.</extracomment>
        <translation>
            <numerusform>Damit wird %n Datei aus der Ablage entfernt.</numerusform>
            <numerusform>Damit werden alle %n Dateien aus der Ablage entfernt.</numerusform>
        </translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>Alle entfernen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Don&apos;t show this message again</source>
        <translation>Diese Meldung nicht mehr anzeigen</translation>
    </message>
</context>
<context>
    <name>SidebarViewController</name>
    <message>
        <source>Welcome</source>
        <extracomment>The rows of the sidebar have room for about 18 letters.</extracomment>
        <translation>Willkommen</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Behavior</source>
        <translation>Verhalten</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Erscheinungsbild</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Info</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Bereiche</translation>
    </message>
</context>
<context>
    <name>StatusMenu</name>
    <message>
        <source>Add From Clipboard</source>
        <translation>Aus der Zwischenablage hinzufügen</translation>
    </message>
    <message>
        <source>Show Shelf</source>
        <translation>Ablage anzeigen</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Einstellungen&#xa0;…</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Aktualisierungen suchen&#xa0;…</translation>
    </message>
    <message>
        <source>More from Orvane</source>
        <translation>Mehr von Orvane</translation>
    </message>
    <message>
        <source>Launch at Login</source>
        <translation>Beim Anmelden starten</translation>
    </message>
    <message>
        <source>Quit Parklet</source>
        <translation>Parklet beenden</translation>
    </message>
    <message>
        <source>Hide Shelf</source>
        <translation>Ablage ausblenden</translation>
    </message>
</context>
<context>
    <name>TileRemoveButton</name>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
</context>
<context>
    <name>UpdateChecker</name>
    <message>
        <source>Parklet update available</source>
        <translation>Aktualisierung für Parklet verfügbar</translation>
    </message>
    <message>
        <source>Version %1 is available.</source>
        <translation>Version %1 ist verfügbar.</translation>
    </message>
    <message>
        <source>Version %1 is available.

Release notes: %2</source>
        <translation>Version %1 ist verfügbar.

Versionshinweise: %2</translation>
    </message>
    <message>
        <source>Download Update</source>
        <translation>Aktualisierung herunterladen</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>Parklet is up to date</source>
        <translation>Parklet ist aktuell</translation>
    </message>
    <message>
        <source>You&apos;re running the latest version.</source>
        <translation>Die neueste Version ist installiert.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>WelcomePane</name>
    <message>
        <source>Lightweight drag &amp; drop file shelf for macOS</source>
        <translation>Schlanke Drag-and-drop-Ablage für Dateien unter macOS</translation>
    </message>
    <message>
        <source>Drop files onto the floating shelf panel to temporarily
store them, then drag to their destination whenever
you&apos;re ready.</source>
        <translation>Dateien auf der schwebenden Ablage zwischenlagern
und bei Gelegenheit von dort an ihr Ziel ziehen.</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>another program has locked the folder of %1</source>
        <translation>ein anderes Programm sperrt den Ordner von %1</translation>
    </message>
    <message>
        <source>%1 cannot be written</source>
        <translation>%1 kann nicht geschrieben werden</translation>
    </message>
    <message>
        <source>The settings were not saved: %1</source>
        <translation>Die Einstellungen wurden nicht gespeichert: %1</translation>
    </message>
</context>
</TS>
