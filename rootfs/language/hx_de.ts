<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>hx</name>
    <message>
        <source>Setting</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Call Feature</source>
        <translation>Anrufoptionen</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Anwendungen</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>Medien</translation>
    </message>
    <message>
        <source>WAN</source>
        <translation>WAN</translation>
    </message>
    <message>
        <source>Account Setting</source>
        <translation>Konten</translation>
    </message>
    <message>
        <source>Security</source>
        <translation>Sicherheit</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>Date &amp; Time</source>
        <translation>Datum und Uhrzeit</translation>
    </message>
    <message>
        <source>Auto Provision</source>
        <translation>Autokonfiguration</translation>
    </message>
    <message>
        <source>LCD Adjusting</source>
        <translation>Kalibrieren</translation>
    </message>
    <message>
        <source>TV Output</source>
        <translation>TV-Ausgang</translation>
    </message>
    <message>
        <source>Personalize</source>
        <translation>Personalisieren</translation>
    </message>
    <message>
        <source>Screen Saver</source>
        <translation>Bildschirmschoner</translation>
    </message>
    <message>
        <source>Sound Set</source>
        <translation>Töne</translation>
    </message>
    <message>
        <source>Version Detail</source>
        <translation>Versionen</translation>
    </message>
    <message>
        <source>Factory</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Reboot</source>
        <translation>Neustart</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Rufumleitung</translation>
    </message>
    <message>
        <source>Auto Answer</source>
        <translation>Auto-Annahme</translation>
    </message>
    <message>
        <source>Voice Mail</source>
        <translation>Mailbox</translation>
    </message>
    <message>
        <source>DSS Key</source>
        <translation>DSS-Tasten</translation>
    </message>
    <message>
        <source>Key As Send</source>
        <translation>Sendetaste</translation>
    </message>
    <message>
        <source>Call Waiting</source>
        <translation>Anklopfen</translation>
    </message>
    <message>
        <source>Hotline</source>
        <translation>Direktruf</translation>
    </message>
    <message>
        <source>Anonymous Call</source>
        <translation>Anonymer Anruf</translation>
    </message>
    <message>
        <source>Video Set</source>
        <translation>Video</translation>
    </message>
    <message>
        <source>Picture-dial Setting</source>
        <translation>Bildwahl</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Sprachnachrichten</translation>
    </message>
    <message>
        <source>Weather</source>
        <translation>Wetter</translation>
    </message>
    <message>
        <source>Stock</source>
        <translation>Aktien</translation>
    </message>
    <message>
        <source>Ndeck</source>
        <translation>Ndeck</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Telefonbuch</translation>
    </message>
    <message>
        <source>Call Histroy</source>
        <translation>Anrufliste</translation>
    </message>
    <message>
        <source>Door Phone</source>
        <translation>Türstation</translation>
    </message>
    <message>
        <source>IP Camera</source>
        <translation>IP-Kamera</translation>
    </message>
    <message>
        <source>Photo Play</source>
        <translation>Diashow</translation>
    </message>
    <message>
        <source>Video Play</source>
        <translation>Videos ansehen</translation>
    </message>
    <message>
        <source>Photo Manager</source>
        <translation>Fotos verwalten</translation>
    </message>
    <message>
        <source>Video Manager</source>
        <translation>Videos verwalten</translation>
    </message>
    <message>
        <source>Sound Manager</source>
        <translation>Klingeltöne</translation>
    </message>
    <message>
        <source>Wallpaper Manager</source>
        <translation>Hintergründe</translation>
    </message>
    <message>
        <source>Contact Picture Manage</source>
        <translation>Kontaktbilder</translation>
    </message>
    <message>
        <source>Ringtone Manager</source>
        <translation>Klingeltöne</translation>
    </message>
    <message>
        <source>File Manager</source>
        <translation>Dateien</translation>
    </message>
    <message>
        <source>Date and Time</source>
        <translation>Datum und Uhrzeit</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>IME</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Mehr</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Wird geladen …</translation>
    </message>
    <message>
        <source>Loading Local Phonebook Module</source>
        <translation>Lokales Telefonbuch wird geladen</translation>
    </message>
    <message>
        <source>Loading Remote Phonebook Module</source>
        <translation>Netzwerk-Telefonbuch wird geladen</translation>
    </message>
    <message>
        <source>Loading CallHistroy Module</source>
        <translation>Anrufliste wird geladen</translation>
    </message>
    <message>
        <source>Loading Setting Module</source>
        <translation>Einstellungen werden geladen</translation>
    </message>
    <message>
        <source>Loading Call Feature Module</source>
        <translation>Anrufoptionen werden geladen</translation>
    </message>
    <message>
        <source>Loading Application Module</source>
        <translation>Anwendungen werden geladen</translation>
    </message>
    <message>
        <source>Loading Media Module</source>
        <translation>Medien werden geladen</translation>
    </message>
    <message>
        <source>Loading Browser Module</source>
        <translation>Browser wird geladen</translation>
    </message>
    <message>
        <source>auto upgrading!</source>
        <translation>Das Telefon wird gerade aktualisiert!</translation>
    </message>
    <message>
        <source>Reset to factory?</source>
        <translation>Auf Werkseinstellungen zurücksetzen?</translation>
    </message>
    <message>
        <source>The phone could not be reset!</source>
        <translation>Das Telefon konnte nicht zurückgesetzt werden!</translation>
    </message>
    <message>
        <source>The phone restarts with its factory settings.</source>
        <translation>Das Telefon startet mit den Werkseinstellungen neu.</translation>
    </message>
    <message>
        <source>Reboot device?</source>
        <translation>Telefon neu starten?</translation>
    </message>
    <message>
        <source>Touch screen calibration will begin.</source>
        <translation>Die Kalibrierung des Touchscreens beginnt.</translation>
    </message>
    <message>
        <source>This feature is under construction.</source>
        <translation>Diese Funktion ist noch in Arbeit.</translation>
    </message>
    <message>
        <source>Unknow dialog type</source>
        <translation>Unbekannte Seite</translation>
    </message>
    <message>
        <source>Fail to load xml file [/rundata/data/stockData.xml]</source>
        <translation>Die Datei [/rundata/data/stockData.xml] kann nicht geladen werden</translation>
    </message>
    <message>
        <source>DHCP</source>
        <translation>DHCP</translation>
    </message>
    <message>
        <source>PPPoE</source>
        <translation>PPPoE</translation>
    </message>
    <message>
        <source>Static IP</source>
        <translation>Feste IP</translation>
    </message>
    <message>
        <source>User Name</source>
        <translation>Benutzername</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Passwort</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>IP-Adresse</translation>
    </message>
    <message>
        <source>MASK</source>
        <translation>Netzmaske</translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation>Gateway</translation>
    </message>
    <message>
        <source>DNS1</source>
        <translation>DNS1</translation>
    </message>
    <message>
        <source>DNS2</source>
        <translation>DNS2</translation>
    </message>
    <message>
        <source>User name is invalid!</source>
        <translation>Der Benutzername ist ungültig!</translation>
    </message>
    <message>
        <source>Password is invalid!</source>
        <translation>Das Passwort ist ungültig!</translation>
    </message>
    <message>
        <source>IP address is invalid!</source>
        <translation>Die IP-Adresse ist ungültig!</translation>
    </message>
    <message>
        <source>Ip Address is used!</source>
        <translation>Die IP-Adresse ist schon vergeben!</translation>
    </message>
    <message>
        <source>Subnet mask is invalid!</source>
        <translation>Die Netzmaske ist ungültig!</translation>
    </message>
    <message>
        <source>Gateway is invalid!</source>
        <translation>Das Gateway ist ungültig!</translation>
    </message>
    <message>
        <source>DNS1 is invalid!</source>
        <translation>DNS1 ist ungültig!</translation>
    </message>
    <message>
        <source>DNS2 is invalid!</source>
        <translation>DNS2 ist ungültig!</translation>
    </message>
    <message>
        <source>Network configuration has changed, reboot system?</source>
        <translation>Die Netzwerkeinstellungen wurden geändert. Neu starten?</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Konto</translation>
    </message>
    <message>
        <source>Enable Line</source>
        <translation>Leitung aktiv</translation>
    </message>
    <message>
        <source>Display Name</source>
        <translation>Anzeigename</translation>
    </message>
    <message>
        <source>Register Name</source>
        <translation>Anmeldename</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Server</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>Enable STUN</source>
        <translation>STUN aktiv</translation>
    </message>
    <message>
        <source>Enable OutBound</source>
        <translation>Outbound-Proxy</translation>
    </message>
    <message>
        <source>Display name is invalid!</source>
        <translation>Der Anzeigename ist ungültig!</translation>
    </message>
    <message>
        <source>Register name is invalid!</source>
        <translation>Der Anmeldename ist ungültig!</translation>
    </message>
    <message>
        <source>SIP proxy is invalid!</source>
        <translation>Der SIP-Server ist ungültig!</translation>
    </message>
    <message>
        <source>SIP proxy server is invalid!</source>
        <translation>Die Adresse des SIP-Servers ist ungültig!</translation>
    </message>
    <message>
        <source>SIP proxy port is invalid!</source>
        <translation>Der Port des SIP-Servers ist ungültig!</translation>
    </message>
    <message>
        <source>STUN server is invalid!</source>
        <translation>Der STUN-Server ist ungültig!</translation>
    </message>
    <message>
        <source>STUN server port is invalid!</source>
        <translation>Der Port des STUN-Servers ist ungültig!</translation>
    </message>
    <message>
        <source>OutBound server is invalid!</source>
        <translation>Der Outbound-Proxy ist ungültig!</translation>
    </message>
    <message>
        <source>OutBound server port is invalid!</source>
        <translation>Der Port des Outbound-Proxys ist ungültig!</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>SoftWare Version</source>
        <translation>Software</translation>
    </message>
    <message>
        <source>HardWare Version</source>
        <translation>Hardware</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>MAC Address</source>
        <translation>MAC-Adresse</translation>
    </message>
    <message>
        <source>WAN Port Type</source>
        <translation>WAN-Typ</translation>
    </message>
    <message>
        <source>Link Status</source>
        <translation>Verbindung</translation>
    </message>
    <message>
        <source>Phone Number</source>
        <translation>Rufnummer</translation>
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
        <source>Conflict</source>
        <translation>IP-Konflikt</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>Deaktiviert</translation>
    </message>
    <message>
        <source>Registering</source>
        <translation>Anmeldung läuft</translation>
    </message>
    <message>
        <source>Registered</source>
        <translation>Angemeldet</translation>
    </message>
    <message>
        <source>Register failed</source>
        <translation>Anmeldung fehlgeschlagen</translation>
    </message>
    <message>
        <source>Unregistered</source>
        <translation>Nicht angemeldet</translation>
    </message>
    <message>
        <source>Default account</source>
        <translation>Standardkonto</translation>
    </message>
    <message>
        <source>Inexistence</source>
        <translation>Nicht vorhanden</translation>
    </message>
    <message>
        <source>Unregistering</source>
        <translation>Abmeldung läuft</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>Keiner</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Eintrag</translation>
    </message>
    <message>
        <source>Old Password</source>
        <translation>Altes Passwort</translation>
    </message>
    <message>
        <source>New Password</source>
        <translation>Neues Passwort</translation>
    </message>
    <message>
        <source>Re-enter</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Admin Password</source>
        <translation>Administratorpasswort</translation>
    </message>
    <message>
        <source>Old password is wrong!</source>
        <translation>Das alte Passwort ist falsch!</translation>
    </message>
    <message>
        <source>New passwords do not match.</source>
        <translation>Die neuen Passwörter stimmen nicht überein.</translation>
    </message>
    <message>
        <source>Please input the password:</source>
        <translation>Bitte das Passwort eingeben:</translation>
    </message>
    <message>
        <source>Password is wrong!</source>
        <translation>Das Passwort ist falsch!</translation>
    </message>
    <message>
        <source>The phone number is empty!</source>
        <translation>Die Rufnummer fehlt!</translation>
    </message>
    <message>
        <source>Time Zone</source>
        <translation>Zeitzone</translation>
    </message>
    <message>
        <source>Time Format</source>
        <translation>Zeitformat</translation>
    </message>
    <message>
        <source>Time Server</source>
        <translation>Zeitserver</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Uhrzeit</translation>
    </message>
    <message>
        <source>Time</source>
        <comment>how long</comment>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>NTP Mode</source>
        <translation>NTP-Zeit</translation>
    </message>
    <message>
        <source>Manual Mode</source>
        <translation>Manuell</translation>
    </message>
    <message>
        <source>24-hour</source>
        <translation>24 Stunden</translation>
    </message>
    <message>
        <source>12-hour</source>
        <translation>12 Stunden</translation>
    </message>
    <message>
        <source>Time server is invalid!</source>
        <translation>Der Zeitserver ist ungültig!</translation>
    </message>
    <message>
        <source>Door Phone 1</source>
        <translation>Türstation 1</translation>
    </message>
    <message>
        <source>IP Camera 1</source>
        <translation>IP-Kamera 1</translation>
    </message>
    <message>
        <source>LDAP</source>
        <translation>LDAP</translation>
    </message>
    <message>
        <source>Local Phonebook</source>
        <translation>Lokales Telefonbuch</translation>
    </message>
    <message>
        <source>Sunday</source>
        <translation>Sonntag</translation>
    </message>
    <message>
        <source>Monday</source>
        <translation>Montag</translation>
    </message>
    <message>
        <source>Tuesday</source>
        <translation>Dienstag</translation>
    </message>
    <message>
        <source>Wednesday</source>
        <translation>Mittwoch</translation>
    </message>
    <message>
        <source>Thursday</source>
        <translation>Donnerstag</translation>
    </message>
    <message>
        <source>Friday</source>
        <translation>Freitag</translation>
    </message>
    <message>
        <source>Saturday</source>
        <translation>Samstag</translation>
    </message>
    <message>
        <source>January</source>
        <translation>Januar</translation>
    </message>
    <message>
        <source>February</source>
        <translation>Februar</translation>
    </message>
    <message>
        <source>March</source>
        <translation>März</translation>
    </message>
    <message>
        <source>April</source>
        <translation>April</translation>
    </message>
    <message>
        <source>May</source>
        <translation>Mai</translation>
    </message>
    <message>
        <source>June</source>
        <translation>Juni</translation>
    </message>
    <message>
        <source>July</source>
        <translation>Juli</translation>
    </message>
    <message>
        <source>August</source>
        <translation>August</translation>
    </message>
    <message>
        <source>September</source>
        <translation>September</translation>
    </message>
    <message>
        <source>October</source>
        <translation>Oktober</translation>
    </message>
    <message>
        <source>November</source>
        <translation>November</translation>
    </message>
    <message>
        <source>December</source>
        <translation>Dezember</translation>
    </message>
    <message>
        <source>%1, %2 %3</source>
        <translation>%1, %2. %3</translation>
    </message>
    <message>
        <source>Video Phone</source>
        <translation>Videotelefon</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Leitung</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Nummer</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Bild</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Ohne</translation>
    </message>
    <message>
        <source>Contact</source>
        <translation>Kontakt</translation>
    </message>
    <message>
        <source>Call</source>
        <translation>Anrufen</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Neu</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Dauer</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Name or number</source>
        <translation>Name oder Nummer</translation>
    </message>
    <message>
        <source>Delete Contact</source>
        <translation>Kontakt löschen</translation>
    </message>
    <message>
        <source>Delete this contact?</source>
        <translation>Diesen Kontakt löschen?</translation>
    </message>
    <message>
        <source>Settings cannot be stored. Changes last until the phone is switched off.</source>
        <translation>Die Einstellungen können nicht gespeichert werden. Änderungen gelten, bis das Telefon ausgeschaltet wird.</translation>
    </message>
    <message>
        <source>The call history cannot be saved!</source>
        <translation>Die Anrufliste kann nicht gespeichert werden!</translation>
    </message>
    <message>
        <source>The contact cannot be saved!</source>
        <translation>Der Kontakt kann nicht gespeichert werden!</translation>
    </message>
    <message>
        <source>The name is empty!</source>
        <translation>Der Name fehlt!</translation>
    </message>
    <message>
        <source>The phone book is empty.</source>
        <translation>Das Telefonbuch ist leer.</translation>
    </message>
    <message>
        <source>The phone book cannot be loaded.</source>
        <translation>Das Telefonbuch kann nicht geladen werden.</translation>
    </message>
    <message>
        <source>Remote Phonebook</source>
        <translation>Netzwerk-Telefonbuch</translation>
    </message>
    <message>
        <source>There are no calls yet.</source>
        <translation>Es gibt noch keine Anrufe.</translation>
    </message>
    <message>
        <source>Delete all calls?</source>
        <translation>Alle Anrufe löschen?</translation>
    </message>
    <message>
        <source>The calls cannot be deleted!</source>
        <translation>Die Anrufe können nicht gelöscht werden!</translation>
    </message>
    <message>
        <source>Nothing was found.</source>
        <translation>Nichts gefunden.</translation>
    </message>
    <message>
        <source>LDAP server is not reachable</source>
        <translation>Der LDAP-Server ist nicht erreichbar</translation>
    </message>
    <message>
        <source>Browser</source>
        <translation>Browser</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Neu laden</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Vorige Seite</translation>
    </message>
    <message>
        <source>The page cannot be loaded.</source>
        <translation>Die Seite kann nicht geladen werden.</translation>
    </message>
    <message>
        <source>This page cannot be shown.</source>
        <translation>Diese Seite kann nicht angezeigt werden.</translation>
    </message>
    <message>
        <source>This address cannot be opened.</source>
        <translation>Diese Adresse kann nicht geöffnet werden.</translation>
    </message>
    <message>
        <source>Calling...</source>
        <translation>Verbindung wird aufgebaut …</translation>
    </message>
    <message>
        <source>Ringing...</source>
        <translation>Es klingelt …</translation>
    </message>
    <message>
        <source>Transferring...</source>
        <translation>Wird übergeben …</translation>
    </message>
    <message>
        <source>Incoming call</source>
        <translation>Eingehender Anruf</translation>
    </message>
    <message>
        <source>In call</source>
        <translation>Im Gespräch</translation>
    </message>
    <message>
        <source>Call ended</source>
        <translation>Gespräch beendet</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>Besetzt</translation>
    </message>
    <message>
        <source>The line is not registered</source>
        <translation>Die Leitung ist nicht angemeldet</translation>
    </message>
    <message>
        <source>The server does not answer</source>
        <translation>Der Server antwortet nicht</translation>
    </message>
    <message>
        <source>The server's name is not known</source>
        <translation>Der Name des Servers ist nicht bekannt</translation>
    </message>
    <message>
        <source>The server does not accept name or password</source>
        <translation>Der Server lehnt Name oder Passwort ab</translation>
    </message>
    <message>
        <source>There is no secure connection to the server</source>
        <translation>Keine sichere Verbindung zum Server</translation>
    </message>
    <message>
        <source>The phone has no usable certificates</source>
        <translation>Das Telefon hat keine brauchbaren Zertifikate</translation>
    </message>
    <message>
        <source>The certificate of the server is for another name</source>
        <translation>Das Zertifikat des Servers gilt für einen anderen Namen</translation>
    </message>
    <message>
        <source>The certificate of the server is from an unknown authority</source>
        <translation>Das Zertifikat des Servers stammt von einer unbekannten Stelle</translation>
    </message>
    <message>
        <source>The certificate of the server has expired</source>
        <translation>Das Zertifikat des Servers ist abgelaufen</translation>
    </message>
    <message>
        <source>The certificate of the server is not valid yet</source>
        <translation>Das Zertifikat des Servers gilt noch nicht</translation>
    </message>
    <message>
        <source>The server does not accept the certificate of the phone</source>
        <translation>Der Server lehnt das Zertifikat des Telefons ab</translation>
    </message>
    <message>
        <source>The server refuses a secure connection</source>
        <translation>Der Server lehnt eine sichere Verbindung ab</translation>
    </message>
    <message>
        <source>The server knows no secure connection</source>
        <translation>Der Server kennt keine sichere Verbindung</translation>
    </message>
    <message>
        <source>The name service does not answer</source>
        <translation>Der Namensdienst antwortet nicht</translation>
    </message>
    <message>
        <source>The STUN server does not answer</source>
        <translation>Der STUN-Server antwortet nicht</translation>
    </message>
    <message>
        <source>The server does not know the user name</source>
        <translation>Der Server kennt den Benutzernamen nicht</translation>
    </message>
    <message>
        <source>The server is out of service</source>
        <translation>Der Server ist außer Betrieb</translation>
    </message>
    <message>
        <source>The server asks for the password in an unknown way</source>
        <translation>Der Server fragt das Passwort auf unbekannte Art ab</translation>
    </message>
    <message>
        <source>The server refuses the registration</source>
        <translation>Der Server lehnt die Anmeldung ab</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>The call was declined</source>
        <translation>Der Anruf wurde abgelehnt</translation>
    </message>
    <message>
        <source>This number is not known</source>
        <translation>Diese Nummer ist nicht bekannt</translation>
    </message>
    <message>
        <source>Not available at present</source>
        <translation>Zurzeit nicht erreichbar</translation>
    </message>
    <message>
        <source>The server does not allow this call</source>
        <translation>Der Server erlaubt diesen Anruf nicht</translation>
    </message>
    <message>
        <source>Anonymous</source>
        <translation>Anonym</translation>
    </message>
    <message>
        <source>Anonymous calls are not accepted</source>
        <translation>Es werden keine anonymen Anrufe angenommen</translation>
    </message>
    <message>
        <source>The two phones have no sound in common</source>
        <translation>Die beiden Telefone haben kein gemeinsames Tonformat</translation>
    </message>
    <message>
        <source>The call could not be made</source>
        <translation>Der Anruf kam nicht zustande</translation>
    </message>
    <message>
        <source>Sound is not available at present</source>
        <translation>Zurzeit gibt es keinen Ton</translation>
    </message>
    <message>
        <source>The connection was lost</source>
        <translation>Die Verbindung wurde unterbrochen</translation>
    </message>
    <message>
        <source>Key tones do not arrive</source>
        <translation>Tastentöne kommen nicht an</translation>
    </message>
    <message>
        <source>Another phone has answered</source>
        <translation>Ein anderes Telefon hat angenommen</translation>
    </message>
    <message>
        <source>Nobody answers</source>
        <translation>Niemand nimmt ab</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Stumm</translation>
    </message>
    <message>
        <source>Unmute</source>
        <translation>Ton an</translation>
    </message>
    <message>
        <source>Muted</source>
        <translation>Stummgeschaltet</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Lautstärke</translation>
    </message>
    <message>
        <source>Volume</source>
        <comment>of trades</comment>
        <translation>Umsatz</translation>
    </message>
    <message>
        <source>Volume -</source>
        <translation>Leiser</translation>
    </message>
    <message>
        <source>Volume +</source>
        <translation>Lauter</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Auflegen</translation>
    </message>
    <message>
        <source>Image is oversized!</source>
        <translation>Das Bild ist zu groß!</translation>
    </message>
    <message>
        <source>Image is error!</source>
        <translation>Das Bild ist beschädigt!</translation>
    </message>
    <message>
        <source>Jan</source>
        <translation>Jan</translation>
    </message>
    <message>
        <source>Feb</source>
        <translation>Feb</translation>
    </message>
    <message>
        <source>Mar</source>
        <translation>Mär</translation>
    </message>
    <message>
        <source>Apr</source>
        <translation>Apr</translation>
    </message>
    <message>
        <source>Jun</source>
        <translation>Jun</translation>
    </message>
    <message>
        <source>Jul</source>
        <translation>Jul</translation>
    </message>
    <message>
        <source>Aug</source>
        <translation>Aug</translation>
    </message>
    <message>
        <source>Sep</source>
        <translation>Sep</translation>
    </message>
    <message>
        <source>Oct</source>
        <translation>Okt</translation>
    </message>
    <message>
        <source>Nov</source>
        <translation>Nov</translation>
    </message>
    <message>
        <source>Dec</source>
        <translation>Dez</translation>
    </message>
    <message>
        <source>Mon</source>
        <translation>Mo</translation>
    </message>
    <message>
        <source>Tue</source>
        <translation>Di</translation>
    </message>
    <message>
        <source>Wed</source>
        <translation>Mi</translation>
    </message>
    <message>
        <source>Thu</source>
        <translation>Do</translation>
    </message>
    <message>
        <source>Fri</source>
        <translation>Fr</translation>
    </message>
    <message>
        <source>Sat</source>
        <translation>Sa</translation>
    </message>
    <message>
        <source>Sun</source>
        <translation>So</translation>
    </message>
    <message>
        <source>%1 AM</source>
        <translation>%1 AM</translation>
    </message>
    <message>
        <source>%1 PM</source>
        <translation>%1 PM</translation>
    </message>
    <message>
        <source>Exit</source>
        <comment>state of a line</comment>
        <translation>Beendet</translation>
    </message>
    <message>
        <source>The settings cannot be saved!</source>
        <translation>Die Einstellungen können nicht gespeichert werden!</translation>
    </message>
    <message>
        <source>Line 1</source>
        <translation>Leitung 1</translation>
    </message>
    <message>
        <source>Line 2</source>
        <translation>Leitung 2</translation>
    </message>
    <message>
        <source>Line 3</source>
        <translation>Leitung 3</translation>
    </message>
    <message>
        <source>Line 4</source>
        <translation>Leitung 4</translation>
    </message>
    <message>
        <source>Discard the changes?</source>
        <translation>Änderungen verwerfen?</translation>
    </message>
    <message>
        <source>No media found in this phone !</source>
        <translation>Auf diesem Telefon gibt es keine Medien!</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message>
        <source>No enough space !</source>
        <translation>Nicht genug Speicherplatz!</translation>
    </message>
    <message>
        <source>Load the same file ?</source>
        <translation>Die Datei ist schon da. Ersetzen?</translation>
    </message>
    <message>
        <source>Loading fail!</source>
        <translation>Der Import ist fehlgeschlagen!</translation>
    </message>
    <message>
        <source>Successful loading!</source>
        <translation>Die Datei wurde importiert.</translation>
    </message>
    <message>
        <source>Importing...</source>
        <translation>Wird importiert …</translation>
    </message>
    <message>
        <source>Deleting...</source>
        <translation>Wird gelöscht …</translation>
    </message>
    <message>
        <source>Delete failed!</source>
        <translation>Die Datei kann nicht gelöscht werden!</translation>
    </message>
    <message>
        <source>Delete </source>
        <translation>Löschen von </translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>It's Image is use,Delete it ?</source>
        <translation>Das Bild gehört zu einem Kontakt. Löschen?</translation>
    </message>
    <message>
        <source>It's read only,can't be deleted!</source>
        <translation>Die Datei ist schreibgeschützt und kann nicht gelöscht werden!</translation>
    </message>
    <message>
        <source>It's the Wall Paper! Delete it ?</source>
        <translation>Das ist das Hintergrundbild! Löschen?</translation>
    </message>
    <message>
        <source>No media found in this phone!</source>
        <translation>Auf diesem Telefon gibt es keine Medien!</translation>
    </message>
    <message>
        <source>The USB device is not connected!</source>
        <translation>Das USB-Gerät ist nicht angeschlossen!</translation>
    </message>
    <message>
        <source>USB</source>
        <translation>USB</translation>
    </message>
    <message>
        <source>10minutes</source>
        <translation>10 Minuten</translation>
    </message>
    <message>
        <source>1minute</source>
        <translation>1 Minute</translation>
    </message>
    <message>
        <source>2minutes</source>
        <translation>2 Minuten</translation>
    </message>
    <message>
        <source>30minutes</source>
        <translation>30 Minuten</translation>
    </message>
    <message>
        <source>30seconds</source>
        <translation>30 Sekunden</translation>
    </message>
    <message>
        <source>5minutes</source>
        <translation>5 Minuten</translation>
    </message>
    <message>
        <source>Always on</source>
        <translation>Immer an</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Annehmen</translation>
    </message>
    <message>
        <source>Backlight Time</source>
        <translation>Beleuchtung aus nach</translation>
    </message>
    <message>
        <source>DND Effect On PSTN</source>
        <translation>„Nicht stören“ gilt auch am Analoganschluss</translation>
    </message>
    <message>
        <source>Decline</source>
        <translation>Ablehnen</translation>
    </message>
    <message>
        <source>Desktop Setting</source>
        <translation>Bildschirm einrichten</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Sprache</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Manuell</translation>
    </message>
    <message>
        <source>NTSC</source>
        <translation>NTSC</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source>PAL</source>
        <translation>PAL</translation>
    </message>
    <message>
        <source>Phone Setting</source>
        <translation>Telefon einrichten</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>Reset language ?</source>
        <translation>Das Telefon für die neue Sprache neu starten?</translation>
    </message>
    <message>
        <source>Ringing Tone</source>
        <translation>Klingelton</translation>
    </message>
    <message>
        <source>Ringing Volume</source>
        <translation>Klingellautstärke</translation>
    </message>
    <message>
        <source>Screen Type</source>
        <translation>Inhalt des Bildschirmschoners</translation>
    </message>
    <message>
        <source>Server URL</source>
        <translation>Server-URL</translation>
    </message>
    <message>
        <source>TV Format</source>
        <translation>TV-Norm</translation>
    </message>
    <message>
        <source>Talking Volume</source>
        <translation>Gesprächslautstärke</translation>
    </message>
    <message>
        <source>Tones and Volume</source>
        <translation>Töne und Lautstärke</translation>
    </message>
    <message>
        <source>Update Server Setting</source>
        <translation>Update-Server einrichten</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Filme</translation>
    </message>
    <message>
        <source>Wallpaper</source>
        <translation>Hintergrund</translation>
    </message>
    <message>
        <source>Can not open Device</source>
        <translation>Der Touchscreen lässt sich nicht öffnen.</translation>
    </message>
    <message>
        <source>LCD Adjusting fail, please try again!</source>
        <translation>Die Kalibrierung ist fehlgeschlagen. Bitte noch einmal versuchen!</translation>
    </message>
    <message>
        <source>Please keep pressing each black cross until it moves to the next position on the screen or confirmation page appears!</source>
        <translation>Bitte jedes schwarze Kreuz gedrückt halten, bis es zur nächsten Stelle springt oder die Bestätigung erscheint!</translation>
    </message>
    <message>
        <source>Touch screen calibration finish. Use the new profile?</source>
        <translation>Die Kalibrierung des Touchscreens ist beendet. Das neue Profil verwenden?</translation>
    </message>
    <message>
        <source>Please input the phone number:</source>
        <translation>Bitte die Rufnummer eingeben:</translation>
    </message>
    <message>
        <source>No line is free</source>
        <translation>Es ist keine Leitung frei</translation>
    </message>
    <message>
        <source>This cannot be dialled</source>
        <translation>Das kann nicht gewählt werden</translation>
    </message>
    <message>
        <source>DSS Key</source>
        <comment>one of them</comment>
        <translation>DSS-Taste</translation>
    </message>
    <message>
        <source>DSS Key List</source>
        <translation>DSS-Tasten</translation>
    </message>
    <message>
        <source>DSS Key Setting</source>
        <translation>DSS-Taste einstellen</translation>
    </message>
    <message>
        <source>Speed Dial Setting</source>
        <translation>Kurzwahl einstellen</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>Beschriftung</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Extension</source>
        <translation>Nebenstelle</translation>
    </message>
    <message>
        <source>Speed Dial</source>
        <translation>Kurzwahl</translation>
    </message>
    <message>
        <source>BLF</source>
        <translation>BLF</translation>
    </message>
    <message>
        <source>BLF List</source>
        <translation>BLF-Liste</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>N/A</translation>
    </message>
    <message>
        <source>Value can't be empty!</source>
        <translation>Der Wert fehlt!</translation>
    </message>
    <message>
        <source>Extension is invalid!</source>
        <translation>Die Nebenstelle ist ungültig!</translation>
    </message>
    <message>
        <source>Delete the record?</source>
        <translation>Eintrag löschen?</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Dial Plan</source>
        <translation>Wählplan</translation>
    </message>
    <message>
        <source>Dial number exist.</source>
        <translation>Die Vorwahl ist schon vergeben.</translation>
    </message>
    <message>
        <source>Prefix</source>
        <translation>Vorwahl</translation>
    </message>
    <message>
        <source>Prefix is empty.</source>
        <translation>Die Vorwahl fehlt.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Ersatz</translation>
    </message>
    <message>
        <source>Replace is empty.</source>
        <translation>Der Ersatz fehlt.</translation>
    </message>
    <message>
        <source>The dial plan cannot be read!</source>
        <translation>Der Wählplan kann nicht gelesen werden!</translation>
    </message>
    <message>
        <source>The max number should &lt;= 20!</source>
        <translation>Es sind höchstens 20 Einträge möglich!</translation>
    </message>
    <message>
        <source>(1-100s)</source>
        <translation>(1–100 s)</translation>
    </message>
    <message>
        <source>10fps</source>
        <translation>10 Bilder/s</translation>
    </message>
    <message>
        <source>128kbps</source>
        <translation>128 kbit/s</translation>
    </message>
    <message>
        <source>15fps</source>
        <translation>15 Bilder/s</translation>
    </message>
    <message>
        <source>192kbps</source>
        <translation>192 kbit/s</translation>
    </message>
    <message>
        <source>1Mbps</source>
        <translation>1 Mbit/s</translation>
    </message>
    <message>
        <source>20fps</source>
        <translation>20 Bilder/s</translation>
    </message>
    <message>
        <source>256kbps</source>
        <translation>256 kbit/s</translation>
    </message>
    <message>
        <source>25fps</source>
        <translation>25 Bilder/s</translation>
    </message>
    <message>
        <source>30fps</source>
        <translation>30 Bilder/s</translation>
    </message>
    <message>
        <source>384kbps</source>
        <translation>384 kbit/s</translation>
    </message>
    <message>
        <source>512kbps</source>
        <translation>512 kbit/s</translation>
    </message>
    <message>
        <source>768kbps</source>
        <translation>768 kbit/s</translation>
    </message>
    <message>
        <source>After 15 Seconds</source>
        <translation>Nach 15 Sekunden</translation>
    </message>
    <message>
        <source>After 30 Seconds</source>
        <translation>Nach 30 Sekunden</translation>
    </message>
    <message>
        <source>After 5 Seconds</source>
        <translation>Nach 5 Sekunden</translation>
    </message>
    <message>
        <source>Always Forward</source>
        <translation>Immer umleiten</translation>
    </message>
    <message>
        <source>Always forward number is invalid!</source>
        <translation>Die Nummer für „Immer umleiten“ ist ungültig!</translation>
    </message>
    <message>
        <source>Anonymous Call Off code can't be empty!</source>
        <translation>Der Aus-Code für den anonymen Anruf fehlt!</translation>
    </message>
    <message>
        <source>Anonymous Call Rejection</source>
        <translation>Anonyme Anrufe abweisen</translation>
    </message>
    <message>
        <source>Auto Answer Type</source>
        <translation>Zeit der Auto-Annahme</translation>
    </message>
    <message>
        <source>Bandwidth</source>
        <translation>Bandbreite</translation>
    </message>
    <message>
        <source>Busy Forward</source>
        <translation>Bei Besetzt umleiten</translation>
    </message>
    <message>
        <source>Busy forward number is invalid!</source>
        <translation>Die Nummer für „Bei Besetzt umleiten“ ist ungültig!</translation>
    </message>
    <message>
        <source>Can't forward to own number!</source>
        <translation>Die Umleitung auf die eigene Nummer ist nicht möglich!</translation>
    </message>
    <message>
        <source>Directly</source>
        <translation>Sofort</translation>
    </message>
    <message>
        <source>Effect On PSTN</source>
        <translation>Gilt auch für die Analogleitung</translation>
    </message>
    <message>
        <source>Enable Auto Answer</source>
        <translation>Auto-Annahme aktivieren</translation>
    </message>
    <message>
        <source>Enable Call Waiting</source>
        <translation>Anklopfen aktivieren</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Aktiviert</translation>
    </message>
    <message>
        <source>Forward Setting</source>
        <translation>Rufumleitung</translation>
    </message>
    <message>
        <source>Frame Rate</source>
        <translation>Bildrate</translation>
    </message>
    <message>
        <source>Hotline Delay(0~10s)</source>
        <translation>Direktruf nach (0–10 s)</translation>
    </message>
    <message>
        <source>Hotline Number</source>
        <translation>Nummer des Direktrufs</translation>
    </message>
    <message>
        <source>Key #</source>
        <translation>Taste #</translation>
    </message>
    <message>
        <source>Key *</source>
        <translation>Taste *</translation>
    </message>
    <message>
        <source>Local Video</source>
        <translation>Eigenes Bild</translation>
    </message>
    <message>
        <source>No Answer Forward</source>
        <translation>Ohne Antwort umleiten</translation>
    </message>
    <message>
        <source>No answer forward number is invalid!</source>
        <translation>Die Nummer für „Ohne Antwort umleiten“ ist ungültig!</translation>
    </message>
    <message>
        <source>No answer time is not within 1-100 seconds!</source>
        <translation>Die Zeit ohne Antwort liegt nicht zwischen 1 und 100 Sekunden!</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Off Code</source>
        <translation>Aus-Code</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>On Code</source>
        <translation>Ein-Code</translation>
    </message>
    <message>
        <source>PSTN Call</source>
        <translation>Analoger Anruf</translation>
    </message>
    <message>
        <source>Preferred Call Type</source>
        <translation>Bevorzugte Anrufart</translation>
    </message>
    <message>
        <source>Rejection Off code can't be empty!</source>
        <translation>Der Aus-Code für die Abweisung fehlt!</translation>
    </message>
    <message>
        <source>Time limited(0-10s)!</source>
        <translation>Die Zeit liegt zwischen 0 und 10 Sekunden!</translation>
    </message>
    <message>
        <source>Video Call</source>
        <translation>Videoanruf</translation>
    </message>
    <message>
        <source>Voice Call</source>
        <translation>Sprachanruf</translation>
    </message>
    <message>
        <source>Add call</source>
        <translation>Neuer Anruf</translation>
    </message>
    <message>
        <source>Dial</source>
        <translation>Wählen</translation>
    </message>
    <message>
        <source>Forward</source>
        <comment>a call that rings</comment>
        <translation>Weiterleiten</translation>
    </message>
    <message>
        <source>Video</source>
        <comment>in a call</comment>
        <translation>Video</translation>
    </message>
    <message>
        <source>Held by the other side</source>
        <translation>Von der anderen Seite gehalten</translation>
    </message>
    <message>
        <source>Not confirmed yet</source>
        <translation>Noch nicht bestätigt</translation>
    </message>
    <message>
        <source>Forwarded by %1</source>
        <translation>Weitergeleitet von %1</translation>
    </message>
    <message>
        <source>Forwarded to %1</source>
        <translation>Weitergeleitet an %1</translation>
    </message>
    <message>
        <source>Transferred to %1</source>
        <translation>Übergeben an %1</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>Halten</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>On hold</source>
        <translation>Gehalten</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Fortsetzen</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>Wechseln</translation>
    </message>
    <message>
        <source>Conference</source>
        <translation>Konferenz</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>Aufteilen</translation>
    </message>
    <message>
        <source>These calls cannot be connected</source>
        <translation>Diese Anrufe lassen sich nicht verbinden</translation>
    </message>
    <message>
        <source>The other side refuses the transfer</source>
        <translation>Die andere Seite lehnt die Übergabe ab</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Übergeben</translation>
    </message>
    <message>
        <source>2N</source>
        <translation>2N</translation>
    </message>
    <message>
        <source>Access Pin</source>
        <translation>Zugangs-PIN</translation>
    </message>
    <message>
        <source>Account is invalid!</source>
        <translation>Das Konto ist ungültig!</translation>
    </message>
    <message>
        <source>Advance</source>
        <translation>Erweitert</translation>
    </message>
    <message>
        <source>Basic</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Andere</translation>
    </message>
    <message>
        <source>Device Model</source>
        <translation>Gerätemodell</translation>
    </message>
    <message>
        <source>Display Name already exists!</source>
        <translation>Diesen Anzeigenamen gibt es schon!</translation>
    </message>
    <message>
        <source>Display Name is invalid!</source>
        <translation>Der Anzeigename ist ungültig!</translation>
    </message>
    <message>
        <source>Door Phone 2</source>
        <translation>Türstation 2</translation>
    </message>
    <message>
        <source>Door Phone 3</source>
        <translation>Türstation 3</translation>
    </message>
    <message>
        <source>Door Phone 4</source>
        <translation>Türstation 4</translation>
    </message>
    <message>
        <source>Fullscreen</source>
        <translation>Vollbild</translation>
    </message>
    <message>
        <source>IP Camera 2</source>
        <translation>IP-Kamera 2</translation>
    </message>
    <message>
        <source>IP Camera 3</source>
        <translation>IP-Kamera 3</translation>
    </message>
    <message>
        <source>IP Camera 4</source>
        <translation>IP-Kamera 4</translation>
    </message>
    <message>
        <source>IP Camera Setting</source>
        <translation>IP-Kamera einrichten</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Line1</source>
        <translation>Leitung 1</translation>
    </message>
    <message>
        <source>Line2</source>
        <translation>Leitung 2</translation>
    </message>
    <message>
        <source>Line3</source>
        <translation>Leitung 3</translation>
    </message>
    <message>
        <source>Line4</source>
        <translation>Leitung 4</translation>
    </message>
    <message>
        <source>Linkcom</source>
        <translation>Linkcom</translation>
    </message>
    <message>
        <source>Mobotix</source>
        <translation>Mobotix</translation>
    </message>
    <message>
        <source>Not Send Audio</source>
        <translation>Keinen Ton senden</translation>
    </message>
    <message>
        <source>Not Send Video</source>
        <translation>Kein Video senden</translation>
    </message>
    <message>
        <source>Refuse New Incoming Call</source>
        <translation>Andere Anrufe abweisen</translation>
    </message>
    <message>
        <source>Unlock Pin</source>
        <translation>Türöffner-PIN</translation>
    </message>
    <message>
        <source>Voice Mail Setting</source>
        <translation>Mailbox einrichten</translation>
    </message>
    <message>
        <source>Voice mail number is invalid!</source>
        <translation>Die Mailbox-Nummer ist ungültig!</translation>
    </message>
    <message>
        <source>Voice mail number is invalid!!</source>
        <translation>Die Mailbox-Nummer ist ungültig!!</translation>
    </message>
    <message>
        <source>new</source>
        <translation>neu</translation>
    </message>
    <message>
        <source>old</source>
        <translation>alt</translation>
    </message>
    <message>
        <source>Open door</source>
        <translation>Tür öffnen</translation>
    </message>
    <message>
        <source>Add %1 ?</source>
        <translation>%1 hinzufügen?</translation>
    </message>
    <message>
        <source>Add Stock</source>
        <translation>Aktie hinzufügen</translation>
    </message>
    <message>
        <source>Add stock</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Ask Price</source>
        <translation>Briefkurs</translation>
    </message>
    <message>
        <source>Bid Price</source>
        <translation>Geldkurs</translation>
    </message>
    <message>
        <source>Delete Stock</source>
        <translation>Aktie löschen</translation>
    </message>
    <message>
        <source>Delete stock</source>
        <translation>Aktie löschen</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Hoch</translation>
    </message>
    <message>
        <source>Input is empty!</source>
        <translation>Die Eingabe ist leer!</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Tief</translation>
    </message>
    <message>
        <source>Market Cap</source>
        <translation>Marktkapital.</translation>
    </message>
    <message>
        <source>NetWork is not good, please wait for a while!</source>
        <translation>Das Netzwerk ist langsam, bitte warten Sie einen Moment!</translation>
    </message>
    <message>
        <source>No site information</source>
        <translation>Keine Angaben zu dieser Aktie</translation>
    </message>
    <message>
        <source>Opening Price</source>
        <translation>Eröffnungskurs</translation>
    </message>
    <message>
        <source>Prev Closing Price</source>
        <translation>Schlusskurs Vortag</translation>
    </message>
    <message>
        <source>Stock is full!</source>
        <translation>Die Aktienliste ist voll!</translation>
    </message>
    <message>
        <source>The stock is existed!</source>
        <translation>Die Aktie ist schon vorhanden!</translation>
    </message>
    <message>
        <source>Unable connect to Stock server, please check network.</source>
        <translation>Der Server für Aktien antwortet nicht, bitte prüfen Sie das Netzwerk.</translation>
    </message>
    <message>
        <source>Updated:</source>
        <translation>Aktualisiert:</translation>
    </message>
    <message>
        <source>data exception.</source>
        <translation>Die Daten sind fehlerhaft.</translation>
    </message>
    <message>
        <source>Can't connect</source>
        <translation>Keine Verbindung</translation>
    </message>
    <message>
        <source>Set Desktop</source>
        <translation>Auf Startseite</translation>
    </message>
    <message>
        <source>Succeed to Set Desktop!</source>
        <translation>Das Wetter steht jetzt auf der Startseite.</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
</context>
</TS>
