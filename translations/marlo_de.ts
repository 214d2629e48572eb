<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>CliTexts</name>
    <message>
        <source>%1: the folder %2 does not exist</source>
        <translation>%1: Der Ordner %2 existiert nicht</translation>
    </message>
    <message>
        <source>nothing was done</source>
        <translation>es wurde nichts getan</translation>
    </message>
    <message>
        <source>The library holds no template &quot;%1&quot;.</source>
        <translation>Die Bibliothek enthält keine Vorlage „%1“.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>ROF bps</source>
        <translation>Feuerrate bps</translation>
    </message>
    <message>
        <source>ST ms</source>
        <translation>ST ms</translation>
    </message>
    <message>
        <source>DT ms</source>
        <translation>DT ms</translation>
    </message>
    <message>
        <source>CTO ms</source>
        <translation>CTO ms</translation>
    </message>
    <message>
        <source>LT ms</source>
        <translation>LT ms</translation>
    </message>
    <message>
        <source>CTC ms</source>
        <translation>CTC ms</translation>
    </message>
    <message>
        <source>library %1 takes no arguments</source>
        <translation>library %1 nimmt keine Argumente</translation>
    </message>
    <message>
        <source>library %1 needs %2</source>
        <translation>library %1 braucht %2</translation>
    </message>
    <message>
        <source>library needs a command: list | show ID | export FILE | import FILE | delete ID</source>
        <translation>library braucht einen Befehl: list | show ID | export DATEI | import DATEI | delete ID</translation>
    </message>
    <message>
        <source>an ID</source>
        <translation>eine ID</translation>
    </message>
    <message>
        <source>unknown library command &apos;%1&apos; (list | show ID | export FILE | import FILE | delete ID)</source>
        <translation>unbekannter library-Befehl „%1“ (list | show ID | export DATEI | import DATEI | delete ID)</translation>
    </message>
    <message>
        <source>%1 takes no arguments</source>
        <translation>%1 nimmt keine Argumente</translation>
    </message>
    <message>
        <source>unexpected word &apos;%1&apos;</source>
        <translation>unerwartetes Wort „%1“</translation>
    </message>
    <message>
        <source>--%1 needs a value</source>
        <translation>--%1 braucht einen Wert</translation>
    </message>
    <message>
        <source>unknown option --%1 (allowed: --%2)</source>
        <translation>unbekannte Option --%1 (erlaubt: --%2)</translation>
    </message>
    <message>
        <source>--%1 is given twice</source>
        <translation>--%1 ist doppelt angegeben</translation>
    </message>
    <message>
        <source>--%1 needs a whole number, not &apos;%2&apos;</source>
        <translation>--%1 braucht eine ganze Zahl, nicht „%2“</translation>
    </message>
    <message>
        <source>the grip refused the command (negative answer): %1</source>
        <translation>der Griff hat den Befehl abgelehnt (negative Antwort): %1</translation>
    </message>
    <message>
        <source>ready: nothing stands in the way</source>
        <translation>bereit: nichts steht im Weg</translation>
    </message>
    <message>
        <source>unknown option &apos;%1&apos; (ports takes device names only)</source>
        <translation>unbekannte Option „%1“ (ports nimmt nur Gerätenamen)</translation>
    </message>
    <message>
        <source>a device name is empty</source>
        <translation>ein Gerätename ist leer</translation>
    </message>
    <message>
        <source>a device named cannot be used as it stands (what to do is printed above)</source>
        <translation>ein genanntes Gerät ist so nicht nutzbar (was zu tun ist, steht oben)</translation>
    </message>
    <message>
        <source>not supported by the grip&apos;s firmware %1 (needs %2 or newer); not exchanged</source>
        <translation>von der Firmware %1 des Griffs nicht unterstützt (braucht %2 oder neuer); nicht übertragen</translation>
    </message>
    <message>
        <source>%1 needs one of %2%3</source>
        <translation>%1 braucht eines von %2%3</translation>
    </message>
    <message>
        <source>info takes no arguments</source>
        <translation>info nimmt keine Argumente</translation>
    </message>
    <message>
        <source>get needs exactly one of %1|all</source>
        <translation>get braucht genau eines von %1|all</translation>
    </message>
    <message>
        <source>--%1 takes 0 or 1, not %2</source>
        <translation>--%1 nimmt 0 oder 1, nicht %2</translation>
    </message>
    <message>
        <source>--%1 %2 does not fit the grip&apos;s byte (0..255)</source>
        <translation>--%1 %2 passt nicht in das Byte des Griffs (0..255)</translation>
    </message>
    <message>
        <source>--%1 %2 does not fit the grip&apos;s 16 bits (0..65535)</source>
        <translation>--%1 %2 passt nicht in die 16 Bit des Griffs (0..65535)</translation>
    </message>
    <message>
        <source>put needs one of %1</source>
        <translation>put braucht eines von %1</translation>
    </message>
    <message>
        <source>%1 cannot be put to the grip (put %2)</source>
        <translation>%1 kann nicht an den Griff übertragen werden (put %2)</translation>
    </message>
    <message>
        <source>put %1 needs at least one of --%2</source>
        <translation>put %1 braucht mindestens eines von --%2</translation>
    </message>
    <message>
        <source>note: %1 %2 is outside the usual range %3..%4; it is sent as given</source>
        <translation>Hinweis: %1 %2 liegt außerhalb des üblichen Bereichs %3..%4; der Wert wird wie angegeben gesendet</translation>
    </message>
    <message>
        <source>note: %1 %2 is out of range; the record keeps %3</source>
        <translation>Hinweis: %1 %2 liegt außerhalb des Bereichs; der Datensatz behält %3</translation>
    </message>
    <message>
        <source>reset-counter needs 1, 2 or 3 (both)</source>
        <translation>reset-counter braucht 1, 2 oder 3 (beide)</translation>
    </message>
    <message>
        <source>unknown command &apos;%1&apos;</source>
        <translation>unbekannter Befehl „%1“</translation>
    </message>
    <message>
        <source>(marlo-cli does not ask: the answer taken is No)</source>
        <translation>(marlo-cli fragt nicht nach: als Antwort gilt Nein)</translation>
    </message>
    <message>
        <source>(marlo-cli does not ask: the answer taken is Cancel)</source>
        <translation>(marlo-cli fragt nicht nach: als Antwort gilt Abbrechen)</translation>
    </message>
    <message>
        <source>(marlo-cli does not ask for a file: %1 cancelled)</source>
        <translation>(marlo-cli fragt nicht nach einer Datei: %1 abgebrochen)</translation>
    </message>
    <message>
        <source>Commands:</source>
        <translation>Befehle:</translation>
    </message>
    <message>
        <source>gun information and the feature flags</source>
        <translation>Markierer-Informationen und Funktionsmerkmale</translation>
    </message>
    <message>
        <source>the serial ports and what stands in the way of each</source>
        <translation>die seriellen Schnittstellen und was jeder im Weg steht</translation>
    </message>
    <message>
        <source>Run &apos;marlo-cli --help&apos; for the commands and their options.</source>
        <translation>„marlo-cli --help“ zeigt die Befehle und ihre Optionen.</translation>
    </message>
    <message>
        <source>error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
    <message>
        <source>Configures a Tolvane grip from the command line.</source>
        <translation>Konfiguriert einen Tolvane-Griff von der Kommandozeile aus.</translation>
    </message>
    <message>
        <source>Serial device for this run.</source>
        <translation>Serielles Gerät für diesen Aufruf.</translation>
    </message>
    <message>
        <source>Print JSON.</source>
        <translation>JSON ausgeben.</translation>
    </message>
    <message>
        <source>Library file for this run.</source>
        <translation>Bibliotheksdatei für diesen Aufruf.</translation>
    </message>
    <message>
        <source>What to do (see above).</source>
        <translation>Was zu tun ist (siehe oben).</translation>
    </message>
    <message>
        <source>no command given.</source>
        <translation>kein Befehl angegeben.</translation>
    </message>
    <message>
        <source>the device is empty (give a device such as /dev/ttyUSB0, or sim)</source>
        <translation>das Gerät ist leer (ein Gerät wie /dev/ttyUSB0 oder sim angeben)</translation>
    </message>
    <message>
        <source>the library file is empty (give the path of a library file)</source>
        <translation>die Bibliotheksdatei ist leer (den Pfad einer Bibliotheksdatei angeben)</translation>
    </message>
    <message>
        <source>usage: marlo-cli firmware read FILE | firmware write [--backup] FILE</source>
        <translation>Aufruf: marlo-cli firmware read DATEI | firmware write [--backup] DATEI</translation>
    </message>
    <message>
        <source>--backup: first save the grip&apos;s program in the Backups folder</source>
        <translation>--backup: zuerst das Programm des Griffs im Ordner Backups sichern</translation>
    </message>
    <message>
        <source>compare library template ID with the grip</source>
        <translation>Bibliotheksvorlage ID mit dem Griff vergleichen</translation>
    </message>
    <message>
        <source>the settings each grip held after every get and put</source>
        <translation>die Einstellungen jedes Griffs nach jedem Auslesen und Übertragen</translation>
    </message>
    <message>
        <source>Exit status: 0 done, 1 error, 2 wrong usage, 3 the grip refused, 4 the grip differs (diff).
DEVICE is a serial device such as /dev/ttyUSB0, or &apos;sim&apos; / &apos;sim:KEY=VALUE,...&apos; for the
built-in virtual grip (keys: firmware, boot, protocol, hardware, serial, bootmode, pace,
baud, latency, battery, state=FILE, fault=KIND@CODE[*N], failblock=ADDR*N).
</source>
        <translation>Rückgabewert: 0 erledigt, 1 Fehler, 2 falscher Aufruf, 3 der Griff hat abgelehnt, 4 der Griff weicht ab (diff).
DEVICE ist ein serielles Gerät wie /dev/ttyUSB0, oder „sim“ / „sim:SCHLÜSSEL=WERT,...“ für den
eingebauten virtuellen Griff (Schlüssel: firmware, boot, protocol, hardware, serial, bootmode, pace,
baud, latency, battery, state=DATEI, fault=ART@CODE[*N], failblock=ADRESSE*N).
</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Grip</source>
        <translation>Griff</translation>
    </message>
    <message>
        <source>Template</source>
        <translation>Vorlage</translation>
    </message>
    <message>
        <source>diff needs the ID (or number in library list) of one template</source>
        <translation>diff braucht die ID (oder Nummer in library list) einer Vorlage</translation>
    </message>
    <message>
        <source>Backup: %1</source>
        <translation>Sicherung: %1</translation>
    </message>
    <message>
        <source>--serial needs the grip&apos;s serial number</source>
        <translation>--serial braucht die Seriennummer des Griffs</translation>
    </message>
    <message>
        <source>history takes only --serial S, not &apos;%1&apos;</source>
        <translation>history nimmt nur --serial S, nicht „%1“</translation>
    </message>
    <message>
        <source>%1  serial %2  firmware %3</source>
        <extracomment>The time of an entry, the grip&apos;s serial number and its firmware version.</extracomment>
        <translation>%1  Seriennummer %2  Firmware %3</translation>
    </message>
    <message>
        <source>the grip history is empty</source>
        <translation>der Griffverlauf ist leer</translation>
    </message>
    <message>
        <source>the grip history holds nothing of %1</source>
        <translation>der Griffverlauf enthält nichts von %1</translation>
    </message>
</context>
<context>
    <name>DesktopCommandLine</name>
    <message>
        <source>Usage: marlo [-F FILE]
Configures a Tolvane grip over a serial port: its timing, options, ramping, game
timers, counters and firmware, with a library of named settings.

Options:
  -F FILE        Writes the firmware in FILE to the grip when the window opens.
  -h, --help     Displays this help.
  -v, --version  Displays version information.

The same without a window: marlo-cli --help
</source>
        <translation>Aufruf: marlo [-F DATEI]
Konfiguriert einen Tolvane-Griff über eine serielle Schnittstelle: Zeitwerte, Optionen, Ramping,
Spieltimer, Zähler und Firmware, mit einer Bibliothek benannter Einstellungen.

Optionen:
  -F DATEI       Schreibt die Firmware aus DATEI in den Griff, sobald das Fenster offen ist.
  -h, --help     Zeigt diese Hilfe.
  -v, --version  Zeigt die Versionsinformationen.

Dasselbe ohne Fenster: marlo-cli --help
</translation>
    </message>
    <message>
        <source>marlo needs a graphical display; without one, use marlo-cli (marlo-cli --help).
</source>
        <translation>marlo braucht eine grafische Oberfläche; ohne sie marlo-cli verwenden (marlo-cli --help).
</translation>
    </message>
</context>
<context>
    <name>ErrorWindow</name>
    <message>
        <source>Error number: %1</source>
        <translation>Fehlernummer: %1</translation>
    </message>
    <message>
        <source>Source: %1</source>
        <translation>Quelle: %1</translation>
    </message>
    <message>
        <source>  in %1.%2 (%3)</source>
        <translation>  in %1.%2 (%3)</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Error %1</source>
        <translation>Fehler %1</translation>
    </message>
    <message>
        <source>What to do</source>
        <translation>Was zu tun ist</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>&amp;Details</source>
        <translation>&amp;Details</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy the message and its details, for a support request</source>
        <translation>Meldung und Details kopieren, für eine Support-Anfrage</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Preferences</source>
        <translation>Einstellungen</translation>
    </message>
</context>
<context>
    <name>UpDown</name>
    <message>
        <source>Up</source>
        <translation>Höher</translation>
    </message>
    <message>
        <source>%1 up</source>
        <translation>%1 höher</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Niedriger</translation>
    </message>
    <message>
        <source>%1 down</source>
        <translation>%1 niedriger</translation>
    </message>
</context>
<context>
    <name>cApplication</name>
    <message>
        <source>The library file &quot;%1&quot; had been deleted.<byte value="xd"/>
The whole library was written anew at &quot;%1&quot;.</source>
        <translation>Die Bibliotheksdatei „%1“ war gelöscht worden.<byte value="xd"/>
Die ganze Bibliothek wurde unter „%1“ neu geschrieben.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; had been replaced by another file, which was left as it is.<byte value="xd"/>
The whole library was written beside it to &quot;%2&quot;, which is the library from now on.</source>
        <translation>Die Bibliotheksdatei „%1“ war durch eine andere Datei ersetzt worden, die unverändert blieb.<byte value="xd"/>
Die ganze Bibliothek wurde daneben nach „%2“ geschrieben; das ist von nun an die Bibliothek.</translation>
    </message>
    <message>
        <source>Library file</source>
        <translation>Bibliotheksdatei</translation>
    </message>
</context>
<context>
    <name>cCommControl</name>
    <message>
        <source>Invalid property value: the port settings &quot;%1&quot; are not of the form 9600,N,8,1</source>
        <translation>Ungültiger Eigenschaftswert: Die Schnittstellenparameter „%1“ haben nicht die Form 9600,N,8,1</translation>
    </message>
</context>
<context>
    <name>cError</name>
    <message>
        <source>Checksum error.</source>
        <translation>Prüfsummenfehler.</translation>
    </message>
    <message>
        <source>Unknown errorcode.</source>
        <translation>Unbekannter Fehlercode.</translation>
    </message>
</context>
<context>
    <name>cGripHistory</name>
    <message>
        <source>The grip history could not be written to %1: %2</source>
        <translation>Der Griffverlauf konnte nicht nach %1 geschrieben werden: %2</translation>
    </message>
    <message>
        <source>The grip history %1 could not be read. It was set aside as %2, and a new history was begun.</source>
        <translation>Der Griffverlauf %1 konnte nicht gelesen werden. Er wurde als %2 beiseitegelegt, und ein neuer Verlauf wurde begonnen.</translation>
    </message>
    <message>
        <source>The grip history %1 could not be read, nor set aside; remove or rename it.</source>
        <translation>Der Griffverlauf %1 konnte weder gelesen noch beiseitegelegt werden; bitte entfernen oder umbenennen.</translation>
    </message>
</context>
<context>
    <name>cHeadlessUserInterface</name>
    <message>
        <source>(answered No)</source>
        <translation>(mit Nein beantwortet)</translation>
    </message>
</context>
<context>
    <name>cPortDoctor</name>
    <message>
        <source>The serial port %1 does not exist. Check the device in the options, and that the grip&apos;s cable or USB adapter is plugged in.</source>
        <translation>Die serielle Schnittstelle %1 existiert nicht. Prüfen Sie das Gerät in den Optionen und ob das Kabel oder der USB-Adapter des Griffs eingesteckt ist.</translation>
    </message>
    <message>
        <source>A USB serial adapter (%1) is plugged in but has no serial device: brltty, the Braille display service (process %2), took it over. If no Braille display is used here, remove brltty with &apos;sudo apt remove brltty&apos;; otherwise keep it off serial adapters with &apos;sudo systemctl mask brltty-udev.service&apos; and &apos;sudo systemctl stop brltty-udev.service brltty.service&apos;. Then unplug the adapter and plug it in again.</source>
        <translation>Ein USB-Seriell-Adapter (%1) ist eingesteckt, hat aber kein serielles Gerät: brltty, der Dienst für Braillezeilen (Prozess %2), hat ihn übernommen. Wenn hier keine Braillezeile benutzt wird, entfernen Sie brltty mit „sudo apt remove brltty“; sonst halten Sie ihn mit „sudo systemctl mask brltty-udev.service“ und „sudo systemctl stop brltty-udev.service brltty.service“ von seriellen Adaptern fern. Ziehen Sie den Adapter dann ab und stecken Sie ihn wieder ein.</translation>
    </message>
    <message>
        <source>A USB serial adapter (%1) is plugged in but has no serial device: a program uses it directly (through usbfs), which keeps its serial driver away. Close that program (brltty, the Braille display service, does this with many adapters: &apos;sudo apt remove brltty&apos; if no Braille display is used), then unplug the adapter and plug it in again.</source>
        <translation>Ein USB-Seriell-Adapter (%1) ist eingesteckt, hat aber kein serielles Gerät: Ein Programm benutzt ihn direkt (über usbfs) und hält so seinen seriellen Treiber fern. Schließen Sie dieses Programm (brltty, der Dienst für Braillezeilen, tut das bei vielen Adaptern: „sudo apt remove brltty“, wenn keine Braillezeile benutzt wird), ziehen Sie dann den Adapter ab und stecken Sie ihn wieder ein.</translation>
    </message>
    <message>
        <source>A USB serial adapter (%1) is plugged in but has no serial device: no driver took it. Load its driver with &apos;sudo modprobe %2&apos;, then unplug the adapter and plug it in again.</source>
        <translation>Ein USB-Seriell-Adapter (%1) ist eingesteckt, hat aber kein serielles Gerät: Kein Treiber hat ihn übernommen. Laden Sie seinen Treiber mit „sudo modprobe %2“, ziehen Sie dann den Adapter ab und stecken Sie ihn wieder ein.</translation>
    </message>
    <message>
        <source>A USB serial adapter (%1) is plugged in but has no serial device: the driver %2 took it instead of %3. Unplug the adapter and plug it in again; if that does not help, &apos;sudo modprobe %3&apos; loads the serial driver.</source>
        <translation>Ein USB-Seriell-Adapter (%1) ist eingesteckt, hat aber kein serielles Gerät: Der Treiber %2 hat ihn statt %3 übernommen. Ziehen Sie den Adapter ab und stecken Sie ihn wieder ein; hilft das nicht, lädt „sudo modprobe %3“ den seriellen Treiber.</translation>
    </message>
    <message>
        <source>Permission denied: %1 belongs to the group &apos;%2&apos; (mode %3), and you are not in it. Add yourself with &apos;sudo usermod -aG %2 $USER&apos;, then log out and in again.</source>
        <translation>Zugriff verweigert: %1 gehört der Gruppe „%2“ (Modus %3), und Sie sind nicht darin. Fügen Sie sich mit „sudo usermod -aG %2 $USER“ hinzu, melden Sie sich dann ab und wieder an.</translation>
    </message>
    <message>
        <source>Permission denied: %1 belongs to the group &apos;%2&apos;, which you were added to after this session began. Log out and in again (or restart the computer) so that it takes effect; &apos;newgrp %2&apos; does it for one terminal.</source>
        <translation>Zugriff verweigert: %1 gehört der Gruppe „%2“, zu der Sie erst nach Beginn dieser Sitzung hinzugefügt wurden. Melden Sie sich ab und wieder an (oder starten Sie den Rechner neu), damit es wirkt; „newgrp %2“ tut es für ein Terminal.</translation>
    </message>
    <message>
        <source>Permission denied: only %2 may use %1 (mode %3), not its group &apos;%4&apos;. Let the group &apos;dialout&apos; use it with a udev rule such as KERNEL==&quot;%5&quot;, GROUP=&quot;dialout&quot;, MODE=&quot;0660&quot; in /etc/udev/rules.d/99-marlo.rules, or run &apos;sudo chmod 666 %1&apos;, which lasts until the device is plugged in again.</source>
        <translation>Zugriff verweigert: Nur %2 darf %1 benutzen (Modus %3), nicht seine Gruppe „%4“. Erlauben Sie es der Gruppe „dialout“ mit einer udev-Regel wie KERNEL==&quot;%5&quot;, GROUP=&quot;dialout&quot;, MODE=&quot;0660&quot; in /etc/udev/rules.d/99-marlo.rules, oder führen Sie „sudo chmod 666 %1“ aus, was bis zum nächsten Einstecken des Geräts gilt.</translation>
    </message>
    <message>
        <source>Permission denied: you may not read and write %1. Serial devices usually belong to the group &apos;dialout&apos;: add yourself with &apos;sudo usermod -aG dialout $USER&apos;, then log out and in again.</source>
        <translation>Zugriff verweigert: Sie dürfen %1 nicht lesen und schreiben. Serielle Geräte gehören meist der Gruppe „dialout“: Fügen Sie sich mit „sudo usermod -aG dialout $USER“ hinzu, melden Sie sich dann ab und wieder an.</translation>
    </message>
    <message>
        <source>%1 is in use by %2. Close that program, or end it with &apos;kill %3&apos;, and try again.</source>
        <translation>%1 wird von %2 benutzt. Schließen Sie dieses Programm oder beenden Sie es mit „kill %3“, und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>%1 is locked by %2 through the lock file %4. Close that program, or end it with &apos;kill %3&apos;, and try again.</source>
        <translation>%1 ist von %2 über die Sperrdatei %4 gesperrt. Schließen Sie dieses Programm oder beenden Sie es mit „kill %3“, und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>%1 is locked by the lock file %2, but the process it names (%3) no longer runs: a program ended without removing it. Remove it with &apos;rm %2&apos; (&apos;sudo rm %2&apos; if another user made it) and try again.</source>
        <translation>%1 ist durch die Sperrdatei %2 gesperrt, aber der darin genannte Prozess (%3) läuft nicht mehr: Ein Programm wurde beendet, ohne sie zu entfernen. Entfernen Sie sie mit „rm %2“ („sudo rm %2“, wenn ein anderer Benutzer sie angelegt hat), und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>%1 is locked by the lock file %2, which names no process: a program ended without removing it. Remove it with &apos;rm %2&apos; (&apos;sudo rm %2&apos; if another user made it) and try again.</source>
        <translation>%1 ist durch die Sperrdatei %2 gesperrt, die keinen Prozess nennt: Ein Programm wurde beendet, ohne sie zu entfernen. Entfernen Sie sie mit „rm %2“ („sudo rm %2“, wenn ein anderer Benutzer sie angelegt hat), und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>ModemManager (process %1) is running: it probes %2 as a possible modem whenever it appears, sending it bytes and keeping it busy for several seconds. Stop it with &apos;sudo systemctl stop ModemManager&apos; (&apos;sudo systemctl disable ModemManager&apos; keeps it off), or let it leave the device alone with a udev rule such as %3 in /etc/udev/rules.d/99-marlo.rules, then run &apos;sudo udevadm control --reload&apos; and plug the device in again.</source>
        <translation>ModemManager (Prozess %1) läuft: Er prüft %2 bei jedem Erscheinen als mögliches Modem, sendet ihm Bytes und hält es mehrere Sekunden lang belegt. Beenden Sie ihn mit „sudo systemctl stop ModemManager“ („sudo systemctl disable ModemManager“ lässt ihn aus), oder lassen Sie ihn das Gerät mit einer udev-Regel wie %3 in /etc/udev/rules.d/99-marlo.rules in Ruhe; führen Sie dann „sudo udevadm control --reload“ aus und stecken Sie das Gerät wieder ein.</translation>
    </message>
    <message>
        <source>%1 (process %2, %3)</source>
        <translation>%1 (Prozess %2, %3)</translation>
    </message>
    <message>
        <source>%1 (process %2)</source>
        <translation>%1 (Prozess %2)</translation>
    </message>
    <message>
        <source>process %1</source>
        <translation>Prozess %1</translation>
    </message>
    <message>
        <source>Virtual grip (demo)</source>
        <translation>Virtueller Griff (Demo)</translation>
    </message>
</context>
<context>
    <name>cRegistrySettings</name>
    <message>
        <source>not True or False</source>
        <translation>nicht True oder False</translation>
    </message>
    <message>
        <source>not a number</source>
        <translation>keine Zahl</translation>
    </message>
    <message>
        <source>not a number from %1 to %2</source>
        <translation>keine Zahl von %1 bis %2</translation>
    </message>
    <message>
        <source>[%1] %2 = &quot;%3&quot; (%4)</source>
        <translation>[%1] %2 = &quot;%3&quot; (%4)</translation>
    </message>
</context>
<context>
    <name>cSerialPort</name>
    <message>
        <source>The virtual grip (%1) is not available in this program.</source>
        <translation>Der virtuelle Griff (%1) ist in diesem Programm nicht verfügbar.</translation>
    </message>
    <message>
        <source>The virtual grip cannot start: %1</source>
        <translation>Der virtuelle Griff kann nicht starten: %1</translation>
    </message>
</context>
<context>
    <name>fAbout</name>
    <message>
        <source>Qt %1 (built with %2)</source>
        <translation>Qt %1 (erstellt mit %2)</translation>
    </message>
    <message>
        <source>%1, kernel %2 %3, %4</source>
        <translation>%1, Kernel %2 %3, %4</translation>
    </message>
    <message>
        <source>Display: %1</source>
        <translation>Anzeige: %1</translation>
    </message>
    <message>
        <source>About Tolvane Manager</source>
        <translation>Über Tolvane Manager</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Marlo configures a Tolvane grip over a serial port: its timing settings, options, ramping and game timer, its counters and battery, and its firmware. It keeps your settings as named templates in a library.</source>
        <translation>Marlo konfiguriert einen Tolvane-Griff über eine serielle Schnittstelle: seine Zeitwerte, Optionen, Ramping und Spieltimer, seine Zähler und seinen Akku sowie seine Firmware. Ihre Einstellungen bewahrt es als benannte Vorlagen in einer Bibliothek auf.</translation>
    </message>
    <message>
        <source>&amp;Copy system information</source>
        <translation>Systeminformationen &amp;kopieren</translation>
    </message>
    <message>
        <source>Copies the versions of Marlo, Qt and the system, for a support request</source>
        <translation>Kopiert die Versionen von Marlo, Qt und dem System, für eine Support-Anfrage</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
</context>
<context>
    <name>fBuildInfo</name>
    <message>
        <source>Serial No.:</source>
        <translation>Seriennummer:</translation>
    </message>
    <message>
        <source>Firmware Build:</source>
        <translation>Firmware-Build:</translation>
    </message>
    <message>
        <source>Boot Code Build:</source>
        <translation>Bootcode-Build:</translation>
    </message>
    <message>
        <source>Protocol Build:</source>
        <translation>Protokoll-Build:</translation>
    </message>
    <message>
        <source>Hardware Build:</source>
        <translation>Hardware-Build:</translation>
    </message>
    <message>
        <source>Gun Build Info</source>
        <translation>Markierer-Bauinfo</translation>
    </message>
</context>
<context>
    <name>fCommConsole</name>
    <message>
        <source>Communication log</source>
        <translation>Kommunikationsprotokoll</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
    <message>
        <source>&amp;Save as...</source>
        <translation>&amp;Speichern unter...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Save communication log</source>
        <translation>Kommunikationsprotokoll speichern</translation>
    </message>
    <message>
        <source>Log files (*.log)|*.log|Text files (*.txt)|*.txt|All (*.*)|*.*</source>
        <translation>Protokolldateien (*.log)|*.log|Textdateien (*.txt)|*.txt|Alle (*.*)|*.*</translation>
    </message>
    <message>
        <source>The communication log could not be saved to %1: %2</source>
        <translation>Das Kommunikationsprotokoll konnte nicht unter %1 gespeichert werden: %2</translation>
    </message>
</context>
<context>
    <name>fCompareGrip</name>
    <message>
        <source>Timing</source>
        <translation>Zeitwerte</translation>
    </message>
    <message>
        <source>Game timer</source>
        <translation>Spieltimer</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Ramping</source>
        <translation>Ramping</translation>
    </message>
    <message>
        <source>Shot (ms)</source>
        <translation>Schuss (ms)</translation>
    </message>
    <message>
        <source>Dwell (ms)</source>
        <translation>Dwell (ms)</translation>
    </message>
    <message>
        <source>Open (ms)</source>
        <translation>Öffnen (ms)</translation>
    </message>
    <message>
        <source>Load (ms)</source>
        <translation>Laden (ms)</translation>
    </message>
    <message>
        <source>Close (ms)</source>
        <translation>Schließen (ms)</translation>
    </message>
    <message>
        <source>Firing mode</source>
        <translation>Feuermodus</translation>
    </message>
    <message>
        <source>Game time (minutes)</source>
        <translation>Spielzeit (Minuten)</translation>
    </message>
    <message>
        <source>First alert</source>
        <translation>Erstes Signal</translation>
    </message>
    <message>
        <source>First alert time (s)</source>
        <translation>Zeit des ersten Signals (s)</translation>
    </message>
    <message>
        <source>Second alert</source>
        <translation>Zweites Signal</translation>
    </message>
    <message>
        <source>Second alert time (s)</source>
        <translation>Zeit des zweiten Signals (s)</translation>
    </message>
    <message>
        <source>A.C.E. mounted</source>
        <translation>A.C.E. montiert</translation>
    </message>
    <message>
        <source>Trigger filter</source>
        <translation>Abzugsfilter</translation>
    </message>
    <message>
        <source>Eye check max</source>
        <translation>Eye-Prüfung max.</translation>
    </message>
    <message>
        <source>Use A.C.E.</source>
        <translation>A.C.E. verwenden</translation>
    </message>
    <message>
        <source>Eye check max time (ms)</source>
        <translation>Eye-Prüfung max. Zeit (ms)</translation>
    </message>
    <message>
        <source>Max ROF in ms</source>
        <translation>Max. Feuerrate in ms</translation>
    </message>
    <message>
        <source>Use feeder</source>
        <translation>Loader verwenden</translation>
    </message>
    <message>
        <source>Use LED</source>
        <translation>LED verwenden</translation>
    </message>
    <message>
        <source>Eye OK max</source>
        <translation>Eye OK max.</translation>
    </message>
    <message>
        <source>Eye OK max time (ms)</source>
        <translation>Eye OK max. Zeit (ms)</translation>
    </message>
    <message>
        <source>Training mode</source>
        <translation>Trainingsmodus</translation>
    </message>
    <message>
        <source>Shots before ramping</source>
        <translation>Schüsse vor dem Ramping</translation>
    </message>
    <message>
        <source>ROF in ms before ramping</source>
        <translation>Feuerrate in ms vor dem Ramping</translation>
    </message>
    <message>
        <source>Ramping mode</source>
        <translation>Ramping-Modus</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Ein</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Aus</translation>
    </message>
    <message>
        <source>Compare with grip</source>
        <translation>Mit Griff vergleichen</translation>
    </message>
    <message>
        <source>Values on the grip and as Put sends them</source>
        <translation>Werte auf dem Griff und wie Übertragen sie sendet</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Datensatz</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>On the grip</source>
        <translation>Auf dem Griff</translation>
    </message>
    <message>
        <source>Put sends</source>
        <translation>Übertragen sendet</translation>
    </message>
    <message>
        <source>Differs</source>
        <translation>Abweichung</translation>
    </message>
    <message>
        <source>Not compared (the grip&apos;s firmware does not have them): %1.</source>
        <translation>Nicht verglichen (die Firmware des Griffs kennt sie nicht): %1.</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>weicht ab</translation>
    </message>
</context>
<context>
    <name>fGripHistory</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Serial number</source>
        <translation>Seriennummer</translation>
    </message>
    <message>
        <source>Firmware</source>
        <translation>Firmware</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Timing</source>
        <translation>Zeitwerte</translation>
    </message>
    <message>
        <source>Game timer</source>
        <translation>Spieltimer</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Ramping</source>
        <translation>Ramping</translation>
    </message>
    <message>
        <source>Grip history</source>
        <translation>Griffverlauf</translation>
    </message>
    <message>
        <source>&amp;Show:</source>
        <translation>&amp;Zeigen:</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>Zeigen</translation>
    </message>
    <message>
        <source>The entries of the grip last read, or of every grip</source>
        <translation>Die Einträge des zuletzt ausgelesenen Griffs oder aller Griffe</translation>
    </message>
    <message>
        <source>Grip history entries</source>
        <translation>Einträge des Griffverlaufs</translation>
    </message>
    <message>
        <source>Newest first. Enter makes a new template of the selected entry.</source>
        <translation>Neueste zuerst. Die Eingabetaste macht aus dem gewählten Eintrag eine neue Vorlage.</translation>
    </message>
    <message>
        <source>Values of the selected entry</source>
        <translation>Werte des gewählten Eintrags</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Einstellung</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>&amp;Use</source>
        <translation>&amp;Verwenden</translation>
    </message>
    <message>
        <source>Make a new template in the active setting from the selected entry&apos;s timing and game timer (Enter)</source>
        <translation>Aus den Zeitwerten und dem Spieltimer des gewählten Eintrags eine neue Vorlage in der aktiven Einstellung machen (Eingabe)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>Close the grip history</source>
        <translation>Den Griffverlauf schließen</translation>
    </message>
    <message>
        <source>This grip (none read yet)</source>
        <translation>Dieser Griff (noch keiner ausgelesen)</translation>
    </message>
    <message>
        <source>This grip (%1)</source>
        <translation>Dieser Griff (%1)</translation>
    </message>
    <message>
        <source>All grips</source>
        <translation>Alle Griffe</translation>
    </message>
    <message>
        <source>Reading the grip history...</source>
        <translation>Der Griffverlauf wird gelesen...</translation>
    </message>
    <message>
        <source>No grip history is kept here.</source>
        <translation>Hier wird kein Griffverlauf geführt.</translation>
    </message>
    <message>
        <source>No entries yet: every get and put of the timing, game timer, options or ramping adds one.</source>
        <translation>Noch keine Einträge: Jedes Auslesen und Übertragen der Zeitwerte, des Spieltimers, der Optionen oder des Rampings fügt einen hinzu.</translation>
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
        <source>ST/DT/CTO/LT/CTC %1 ms</source>
        <translation>ST/DT/CTO/LT/CTC %1 ms</translation>
    </message>
    <message>
        <source>game %1 min</source>
        <translation>Spiel %1 min</translation>
    </message>
    <message>
        <source>options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>ramping</source>
        <translation>Ramping</translation>
    </message>
    <message numerus="yes">
        <source>%n entries of grip %1, newest first.</source>
        <translation>
            <numerusform>%n Eintrag von Griff %1, neueste zuerst.</numerusform>
            <numerusform>%n Einträge von Griff %1, neueste zuerst.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n entries of all grips, newest first.</source>
        <translation>
            <numerusform>%n Eintrag aller Griffe, neueste zuerst.</numerusform>
            <numerusform>%n Einträge aller Griffe, neueste zuerst.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>fLibSets</name>
    <message>
        <source>#</source>
        <translation>Nr.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>ROF bps</source>
        <translation>Feuerrate bps</translation>
    </message>
    <message>
        <source>ST ms</source>
        <translation>ST ms</translation>
    </message>
    <message>
        <source>DT ms</source>
        <translation>DT ms</translation>
    </message>
    <message>
        <source>CTO ms</source>
        <translation>CTO ms</translation>
    </message>
    <message>
        <source>LT ms</source>
        <translation>LT ms</translation>
    </message>
    <message>
        <source>CTC ms</source>
        <translation>CTC ms</translation>
    </message>
    <message>
        <source>Tolvane Library - Settings</source>
        <translation>Tolvane-Bibliothek - Einstellungen</translation>
    </message>
    <message>
        <source>Settings library</source>
        <translation>Einstellungsbibliothek</translation>
    </message>
    <message>
        <source>Enter uses the selected setting, Delete deletes it, Ctrl+P shows its properties.</source>
        <translation>Eingabe verwendet die gewählte Einstellung, Entf löscht sie, Strg+P zeigt ihre Eigenschaften.</translation>
    </message>
    <message>
        <source>&amp;Use</source>
        <translation>&amp;Verwenden</translation>
    </message>
    <message>
        <source>Load the selected setting into the main window (Enter)</source>
        <translation>Die gewählte Einstellung ins Hauptfenster laden (Eingabe)</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Delete the selected setting when the library is next saved (Delete)</source>
        <translation>Die gewählte Einstellung beim nächsten Speichern der Bibliothek löschen (Entf)</translation>
    </message>
    <message>
        <source>&amp;Properties</source>
        <translation>&amp;Eigenschaften</translation>
    </message>
    <message>
        <source>Show the name, date and user variables of the selected setting (Ctrl+P)</source>
        <translation>Name, Datum und Benutzervariablen der gewählten Einstellung zeigen (Strg+P)</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Schließen</translation>
    </message>
    <message>
        <source>Setting</source>
        <translation>Einstellung</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Schlüssel</translation>
    </message>
</context>
<context>
    <name>fOptions</name>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Set general options</source>
        <translation>Allgemeine Optionen einstellen</translation>
    </message>
    <message>
        <source>Communication</source>
        <translation>Kommunikation</translation>
    </message>
    <message>
        <source>Set options for communication</source>
        <translation>Optionen für die Kommunikation einstellen</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>&amp;Port:</translation>
    </message>
    <message>
        <source>Ba&amp;ud:</source>
        <translation>B&amp;aud:</translation>
    </message>
    <message>
        <source>&amp;Parity:</source>
        <translation>Pa&amp;rität:</translation>
    </message>
    <message>
        <source>&amp;Bits:</source>
        <translation>&amp;Datenbits:</translation>
    </message>
    <message>
        <source>&amp;Stopbits:</source>
        <translation>&amp;Stoppbits:</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
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
        <source>Apply</source>
        <translation>Übernehmen</translation>
    </message>
    <message>
        <source>Show splashscreen on startup</source>
        <translation>Startbild beim Start zeigen</translation>
    </message>
    <message>
        <source>Show confirmation after grip communication</source>
        <translation>Bestätigung nach der Kommunikation mit dem Griff zeigen</translation>
    </message>
    <message>
        <source>Backward Compatible Upload</source>
        <translation>Abwärtskompatible Übertragung</translation>
    </message>
    <message>
        <source>Database path</source>
        <translation>Datenbankpfad</translation>
    </message>
    <message>
        <source>...</source>
        <translation>...</translation>
    </message>
    <message>
        <source>Browse for the database</source>
        <translation>Nach der Datenbank suchen</translation>
    </message>
    <message>
        <source>Grip syncronization</source>
        <translation>Griff-Synchronisierung</translation>
    </message>
    <message>
        <source>Get settings on connect:</source>
        <translation>Einstellungen beim Verbinden auslesen:</translation>
    </message>
    <message>
        <source>Automatic grip detection:</source>
        <translation>Automatische Griff-Erkennung:</translation>
    </message>
    <message>
        <source>Interval (secs):</source>
        <translation>Intervall (Sek.):</translation>
    </message>
    <message>
        <source>Log communication to a file</source>
        <translation>Kommunikation in eine Datei protokollieren</translation>
    </message>
    <message>
        <source>Log communication to console</source>
        <translation>Kommunikation in der Konsole protokollieren</translation>
    </message>
    <message>
        <source>Communication parameters</source>
        <translation>Kommunikationsparameter</translation>
    </message>
    <message>
        <source>&amp;Device:</source>
        <translation>&amp;Gerät:</translation>
    </message>
    <message>
        <source>(none: the port number above)</source>
        <translation>(keines: die Portnummer oben)</translation>
    </message>
    <message>
        <source>A serial device of this machine, the virtual grip, or a device path. Empty: the port number above is used.</source>
        <translation>Ein serielles Gerät dieses Rechners, der virtuelle Griff oder ein Gerätepfad. Leer: Die Portnummer oben wird verwendet.</translation>
    </message>
    <message>
        <source>Device problem</source>
        <translation>Geräteproblem</translation>
    </message>
    <message>
        <source>Virtual grip (demo)</source>
        <translation>Virtueller Griff (Demo)</translation>
    </message>
    <message>
        <source>The databasename and/or -path has changed.</source>
        <translation>Name und/oder Pfad der Datenbank haben sich geändert.</translation>
    </message>
    <message>
        <source>For this change of setting to take effect you have to close and reopen the Marlo</source>
        <translation>Damit diese Änderung wirksam wird, müssen Sie Marlo schließen und wieder öffnen</translation>
    </message>
    <message>
        <source>Database Path Changed</source>
        <translation>Datenbankpfad geändert</translation>
    </message>
    <message>
        <source>Specified database path does not exist.</source>
        <translation>Der angegebene Datenbankpfad existiert nicht.</translation>
    </message>
    <message>
        <source>Please specify an existing database path or the changes will not be saved.</source>
        <translation>Bitte geben Sie einen vorhandenen Datenbankpfad an, sonst werden die Änderungen nicht gespeichert.</translation>
    </message>
    <message>
        <source>Nonexistent path</source>
        <translation>Nicht vorhandener Pfad</translation>
    </message>
    <message>
        <source>Specified database path does not exist. Do you wish to close the window anyways?</source>
        <translation>Der angegebene Datenbankpfad existiert nicht. Möchten Sie das Fenster trotzdem schließen?</translation>
    </message>
    <message>
        <source>If you wish to end the options-dialog without saving press &apos;Yes&apos;.</source>
        <translation>Wenn Sie den Optionsdialog ohne Speichern beenden möchten, drücken Sie „Ja“.</translation>
    </message>
    <message>
        <source>If you wish to correct the path to a valid path press &apos;No&apos;.</source>
        <translation>Wenn Sie den Pfad zu einem gültigen Pfad berichtigen möchten, drücken Sie „Nein“.</translation>
    </message>
    <message>
        <source>All (*.*)|*.*|MS Access (*.mdb)|*.mdb</source>
        <translation>Alle (*.*)|*.*|MS Access (*.mdb)|*.mdb</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Even</source>
        <translation>Gerade</translation>
    </message>
    <message>
        <source>Mark</source>
        <translation>Mark</translation>
    </message>
    <message>
        <source>Odd</source>
        <translation>Ungerade</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Space</translation>
    </message>
    <message>
        <source>Back up the grip&apos;s firmware before writing new firmware</source>
        <translation>Firmware des Griffs vor dem Schreiben neuer Firmware sichern</translation>
    </message>
    <message>
        <source>A write first reads the grip&apos;s program into a file in %1; writing that file back restores the grip.</source>
        <translation>Beim Schreiben wird zuerst das Programm des Griffs in eine Datei in %1 gelesen; wird diese Datei zurückgeschrieben, ist der Griff wiederhergestellt.</translation>
    </message>
</context>
<context>
    <name>fSetsTemplate</name>
    <message>
        <source>Basic information</source>
        <translation>Grunddaten</translation>
    </message>
    <message>
        <source>User variables</source>
        <translation>Benutzervariablen</translation>
    </message>
    <message>
        <source>Settings #</source>
        <translation>Einstellung Nr.</translation>
    </message>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>Settings #%1</source>
        <translation>Einstellung Nr. %1</translation>
    </message>
</context>
<context>
    <name>fSplash</name>
    <message>
        <source>Marlo %1 is starting</source>
        <translation>Marlo %1 startet</translation>
    </message>
    <message>
        <source>Tolvane Interface Programme</source>
        <translation>Tolvane-Schnittstellenprogramm</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Settings, counters and firmware of your grip</source>
        <translation>Einstellungen, Zähler und Firmware Ihres Griffs</translation>
    </message>
</context>
<context>
    <name>fTolvaneMan</name>
    <message>
        <source>&amp;Get</source>
        <translation>Aus&amp;lesen</translation>
    </message>
    <message>
        <source>Start download of the current settings from the gun.</source>
        <translation>Die aktuellen Einstellungen aus dem Markierer auslesen.</translation>
    </message>
    <message>
        <source>&amp;Put</source>
        <translation>&amp;Übertragen</translation>
    </message>
    <message>
        <source>Start upload of current settings to gun.</source>
        <translation>Die aktuellen Einstellungen an den Markierer übertragen.</translation>
    </message>
    <message>
        <source>Library (settings)</source>
        <translation>Bibliothek (Vorlagen)</translation>
    </message>
    <message>
        <source>Show a list of the templates defined in the system at the current time.</source>
        <translation>Eine Liste der Vorlagen zeigen, die derzeit im System angelegt sind.</translation>
    </message>
    <message>
        <source>Library (stats)</source>
        <translation>Bibliothek (Statistik)</translation>
    </message>
    <message>
        <source>Show all the settings downloaded from a gun in the past.</source>
        <translation>Alle Einstellungen zeigen, die früher aus einem Markierer ausgelesen wurden.</translation>
    </message>
    <message>
        <source>P&amp;roperties</source>
        <translation>&amp;Eigenschaften</translation>
    </message>
    <message>
        <source>Show the details about the current setting/template.</source>
        <translation>Die Angaben zur aktuellen Einstellung/Vorlage zeigen.</translation>
    </message>
    <message>
        <source>&amp;Promote</source>
        <translation>Als Vorlage über&amp;nehmen</translation>
    </message>
    <message>
        <source>Promote a previously downloaded setting to a template.</source>
        <translation>Eine früher ausgelesene Einstellung als Vorlage übernehmen.</translation>
    </message>
    <message>
        <source>&amp;Default settings</source>
        <translation>&amp;Standardwerte</translation>
    </message>
    <message>
        <source>Promote a downloaded setting to a template</source>
        <translation>Eine ausgelesene Einstellung als Vorlage übernehmen</translation>
    </message>
    <message>
        <source>&amp;Burn program</source>
        <translation>&amp;Programm brennen</translation>
    </message>
    <message>
        <source>Upload new firmware to the gun.</source>
        <translation>Neue Firmware in den Markierer schreiben.</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open</source>
        <translation>Ö&amp;ffnen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;As</source>
        <translation>Speichern &amp;unter</translation>
    </message>
    <message>
        <source>&amp;Print</source>
        <translation>&amp;Drucken</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Cut</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>C&amp;opy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>F&amp;unction</source>
        <translation>F&amp;unktion</translation>
    </message>
    <message>
        <source>&amp;Timing settings</source>
        <translation>&amp;Zeitwerte</translation>
    </message>
    <message>
        <source>&amp;Counters</source>
        <translation>Zä&amp;hler</translation>
    </message>
    <message>
        <source>G&amp;ame timers</source>
        <translation>S&amp;pieltimer</translation>
    </message>
    <message>
        <source>&amp;Gun information</source>
        <translation>&amp;Markierer-Informationen</translation>
    </message>
    <message>
        <source>&amp;Battery info</source>
        <translation>&amp;Akku-Informationen</translation>
    </message>
    <message>
        <source>&amp;Firmware program</source>
        <translation>&amp;Firmware-Programm</translation>
    </message>
    <message>
        <source>&amp;EEPROM</source>
        <translation>&amp;EEPROM</translation>
    </message>
    <message>
        <source>E&amp;xtended EEPROM</source>
        <translation>Er&amp;weitertes EEPROM</translation>
    </message>
    <message>
        <source>&amp;Statistics</source>
        <translation>&amp;Statistik</translation>
    </message>
    <message>
        <source>Ga&amp;me</source>
        <translation>Spie&amp;l</translation>
    </message>
    <message>
        <source>P&amp;ut</source>
        <translation>Über&amp;tragen</translation>
    </message>
    <message>
        <source>&amp;Timing</source>
        <translation>&amp;Zeitwerte</translation>
    </message>
    <message>
        <source>&amp;All</source>
        <translation>&amp;Alles</translation>
    </message>
    <message>
        <source>Default Settings</source>
        <translation>Standardwerte</translation>
    </message>
    <message>
        <source>Library &amp;templates...</source>
        <translation>Bibliothek: &amp;Vorlagen...</translation>
    </message>
    <message>
        <source>Library &amp;statistics...</source>
        <translation>Bibliothek: &amp;Statistik...</translation>
    </message>
    <message>
        <source>&amp;Burn firmware</source>
        <translation>&amp;Firmware brennen</translation>
    </message>
    <message>
        <source>&amp;Options</source>
        <translation>&amp;Optionen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Communication log</source>
        <translation>&amp;Kommunikationsprotokoll</translation>
    </message>
    <message>
        <source>Gun &amp;build info</source>
        <translation>Markierer-&amp;Bauinfo</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Contents</source>
        <translation>&amp;Inhalt</translation>
    </message>
    <message>
        <source>&amp;Index</source>
        <translation>In&amp;dex</translation>
    </message>
    <message>
        <source>&amp;About Tolvane Manager</source>
        <translation>Ü&amp;ber Tolvane Manager</translation>
    </message>
    <message>
        <source>Shot</source>
        <translation>Schuss</translation>
    </message>
    <message>
        <source>Dwell</source>
        <translation>Dwell</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Laden</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Timing</source>
        <translation>Zeitwerte</translation>
    </message>
    <message>
        <source>Firing mode:</source>
        <translation>Feuermodus:</translation>
    </message>
    <message>
        <source>Expert Mode</source>
        <translation>Expertenmodus</translation>
    </message>
    <message>
        <source>All timingsettings are made available for adjusting</source>
        <translation>Alle Zeitwerte werden zum Einstellen freigegeben</translation>
    </message>
    <message>
        <source>Close = Open</source>
        <translation>Schließen = Öffnen</translation>
    </message>
    <message>
        <source>Cycle Time Close assumes the same value as Cycle Time Open</source>
        <translation>Die Zykluszeit Schließen übernimmt den Wert der Zykluszeit Öffnen</translation>
    </message>
    <message>
        <source>Training Mode</source>
        <translation>Trainingsmodus</translation>
    </message>
    <message>
        <source>(ms)</source>
        <translation>(ms)</translation>
    </message>
    <message>
        <source>Rate of Fire</source>
        <translation>Feuerrate</translation>
    </message>
    <message>
        <source>10,0</source>
        <translation>10,0</translation>
    </message>
    <message>
        <source>Balls Per Second</source>
        <translation>Bälle pro Sekunde</translation>
    </message>
    <message>
        <source>bps.</source>
        <translation>bps.</translation>
    </message>
    <message>
        <source>Options</source>
        <translation>Optionen</translation>
    </message>
    <message>
        <source>A.C.E. Mounted</source>
        <translation>A.C.E. montiert</translation>
    </message>
    <message>
        <source>Use A.C.E.</source>
        <translation>A.C.E. verwenden</translation>
    </message>
    <message>
        <source>Use Feeder</source>
        <translation>Loader verwenden</translation>
    </message>
    <message>
        <source>Use LED</source>
        <translation>LED verwenden</translation>
    </message>
    <message>
        <source>Use Trigger Filter</source>
        <translation>Abzugsfilter verwenden</translation>
    </message>
    <message>
        <source>Eye Check Max</source>
        <translation>Eye-Prüfung max.</translation>
    </message>
    <message>
        <source>Eye OK Max</source>
        <translation>Eye OK max.</translation>
    </message>
    <message>
        <source>Max ROF in ms</source>
        <translation>Max. Feuerrate in ms</translation>
    </message>
    <message>
        <source>Max ROF</source>
        <translation>Max. Feuerrate</translation>
    </message>
    <message>
        <source>Maximum Balls Per Second</source>
        <translation>Höchstens Bälle pro Sekunde</translation>
    </message>
    <message>
        <source>Ramping</source>
        <translation>Ramping</translation>
    </message>
    <message>
        <source>Ramping Mode :</source>
        <translation>Ramping-Modus :</translation>
    </message>
    <message>
        <source>Shots before ramping</source>
        <translation>Schüsse vor dem Ramping</translation>
    </message>
    <message>
        <source>ROF in ms before ramping</source>
        <translation>Feuerrate in ms vor dem Ramping</translation>
    </message>
    <message>
        <source>Counters</source>
        <translation>Zähler</translation>
    </message>
    <message>
        <source>Counter 1 is at</source>
        <translation>Zähler 1 steht bei</translation>
    </message>
    <message>
        <source>Counter 2 is at</source>
        <translation>Zähler 2 steht bei</translation>
    </message>
    <message>
        <source>Total is at</source>
        <translation>Gesamt steht bei</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
    <message>
        <source>Reset counter %1</source>
        <translation>Zähler %1 zurücksetzen</translation>
    </message>
    <message>
        <source>Game Timer</source>
        <translation>Spieltimer</translation>
    </message>
    <message>
        <source>Counting down from </source>
        <translation>Countdown ab </translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>Sound alert 60 sec. before game end</source>
        <translation>Signal 60 Sek. vor Spielende</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>Akku</translation>
    </message>
    <message>
        <source>Library</source>
        <translation>Bibliothek</translation>
    </message>
    <message>
        <source>Firmware version</source>
        <translation>Firmware-Version</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Status</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>k. A.</translation>
    </message>
    <message>
        <source>The grip&apos;s firmware version</source>
        <translation>Die Firmware-Version des Griffs</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Unsupported command-line parameter.</source>
        <translation>Nicht unterstützter Kommandozeilenparameter.</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Some data have changed without being saved.<byte value="xd"/>
Do you wish to save before exiting?</source>
        <translation>Einige Daten wurden geändert, aber nicht gespeichert.<byte value="xd"/>
Möchten Sie vor dem Beenden speichern?</translation>
    </message>
    <message>
        <source>Save settings</source>
        <translation>Einstellungen speichern</translation>
    </message>
    <message>
        <source>Tolvane Interface Programme [%1]</source>
        <translation>Tolvane-Schnittstellenprogramm [%1]</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>Unbenannt</translation>
    </message>
    <message>
        <source>Tolvane Interface Programme</source>
        <translation>Tolvane-Schnittstellenprogramm</translation>
    </message>
    <message>
        <source>The grip refused the command (error byte 0x%1).</source>
        <translation>Der Griff hat den Befehl abgelehnt (Fehlerbyte 0x%1).</translation>
    </message>
    <message>
        <source>Timinginformation, Countdowntimers, Counters and Batteryinformation were fetched.</source>
        <translation>Zeitwerte, Spieltimer, Zähler und Akku-Informationen wurden ausgelesen.</translation>
    </message>
    <message>
        <source>Timinginformation and Countdowntimers were put.</source>
        <translation>Zeitwerte und Spieltimer wurden übertragen.</translation>
    </message>
    <message>
        <source>Timinginformation was fetched.</source>
        <translation>Zeitwerte wurden ausgelesen.</translation>
    </message>
    <message>
        <source>Timinginformation was put.</source>
        <translation>Zeitwerte wurden übertragen.</translation>
    </message>
    <message>
        <source>Counters were fetched.</source>
        <translation>Zähler wurden ausgelesen.</translation>
    </message>
    <message>
        <source>Batteryinformation was fetched.</source>
        <translation>Akku-Informationen wurden ausgelesen.</translation>
    </message>
    <message>
        <source>Countdowntimers were fetched.</source>
        <translation>Spieltimer wurden ausgelesen.</translation>
    </message>
    <message>
        <source>Countdowntimers were put.</source>
        <translation>Spieltimer wurden übertragen.</translation>
    </message>
    <message>
        <source>Counter %1 was reset.</source>
        <translation>Zähler %1 wurde zurückgesetzt.</translation>
    </message>
    <message>
        <source>%1 (double-click: gun build info)</source>
        <translation>%1 (Doppelklick: Markierer-Bauinfo)</translation>
    </message>
    <message>
        <source>Co&amp;mpare with grip...</source>
        <translation>&amp;Mit Griff vergleichen...</translation>
    </message>
    <message>
        <source>Grip &amp;history...</source>
        <translation>&amp;Griffverlauf...</translation>
    </message>
    <message>
        <source>Show the settings on the grip beside those Put would send; nothing is written.</source>
        <translation>Die Einstellungen auf dem Griff neben denen zeigen, die Übertragen senden würde; nichts wird geschrieben.</translation>
    </message>
    <message>
        <source>List the settings each grip held after every get and put, and make a template of one</source>
        <translation>Die Einstellungen jedes Griffs nach jedem Auslesen und Übertragen auflisten und aus einer eine Vorlage machen</translation>
    </message>
    <message>
        <source>Reading the grip to compare...</source>
        <translation>Der Griff wird zum Vergleichen ausgelesen...</translation>
    </message>
    <message>
        <source>Firmware backed up to %1</source>
        <translation>Firmware gesichert in %1</translation>
    </message>
</context>
<context>
    <name>fUserVariable</name>
    <message>
        <source>User variable</source>
        <translation>Benutzervariable</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>&amp;Value:</source>
        <translation>&amp;Wert:</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
</context>
<context>
    <name>mCommSupport</name>
    <message>
        <source>(%1) %2</source>
        <translation>(%1) %2</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <extracomment>Where the transfer failed, then why: &quot;Download failed at address: 64 (10212) An unknown error ...&quot;</extracomment>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>the record holds %1 data bytes, but a memory block holds at most %2</source>
        <translation>der Datensatz enthält %1 Datenbytes, ein Speicherblock fasst aber höchstens %2</translation>
    </message>
    <message>
        <source>the address 0x%1 lies outside the program memory (0x0000 to 0x7FFF)</source>
        <translation>die Adresse 0x%1 liegt außerhalb des Programmspeichers (0x0000 bis 0x7FFF)</translation>
    </message>
    <message>
        <source>the record&apos;s %1 data bytes from address 0x%2 run past the end of the program memory (0x7FFF)</source>
        <translation>die %1 Datenbytes des Datensatzes ab Adresse 0x%2 reichen über das Ende des Programmspeichers (0x7FFF) hinaus</translation>
    </message>
    <message>
        <source>the file holds more data than the program memory (%1 bytes)</source>
        <translation>die Datei enthält mehr Daten als der Programmspeicher (%1 Bytes)</translation>
    </message>
    <message>
        <source>the file holds more records than the program memory has bytes (%1)</source>
        <translation>die Datei enthält mehr Datensätze, als der Programmspeicher Bytes hat (%1)</translation>
    </message>
</context>
<context>
    <name>mDatabase</name>
    <message>
        <source>The library file &quot;%1&quot; is a folder: give the path of a library file.</source>
        <translation>Die Bibliotheksdatei „%1“ ist ein Ordner: Geben Sie den Pfad einer Bibliotheksdatei an.</translation>
    </message>
    <message>
        <source>The library is not open.</source>
        <translation>Die Bibliothek ist nicht geöffnet.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; could not be made from the template &quot;%2&quot;: %3</source>
        <translation>Die Bibliotheksdatei „%1“ konnte nicht aus der Vorlage „%2“ angelegt werden: %3</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; could not be read: %2.</source>
        <translation>Die Bibliotheksdatei „%1“ konnte nicht gelesen werden: %2.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; could not be written: %2.</source>
        <translation>Die Bibliotheksdatei „%1“ konnte nicht geschrieben werden: %2.</translation>
    </message>
    <message>
        <source>Item cannot be found in the collection corresponding to the requested name or ordinal (column %1).</source>
        <translation>Das Element mit dem angeforderten Namen oder der Ordnungszahl ist nicht in der Auflistung (Spalte %1).</translation>
    </message>
    <message>
        <source>Invalid use of Null (column %1).</source>
        <translation>Unzulässige Verwendung von Null (Spalte %1).</translation>
    </message>
    <message>
        <source>Invalid use of Null (column %1 of the row with ID %2).</source>
        <translation>Unzulässige Verwendung von Null (Spalte %1 der Zeile mit der ID %2).</translation>
    </message>
    <message>
        <source>%1 (column %2)</source>
        <extracomment>An error&apos;s message, then where the value lies.</extracomment>
        <translation>%1 (Spalte %2)</translation>
    </message>
    <message>
        <source>%1 (column %2 of the row with ID %3)</source>
        <translation>%1 (Spalte %2 der Zeile mit der ID %3)</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; is read-only; the library must be writable.</source>
        <translation>Die Bibliotheksdatei „%1“ ist schreibgeschützt; die Bibliothek muss beschreibbar sein.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; cannot be opened: %2</source>
        <translation>Die Bibliotheksdatei „%1“ kann nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; is damaged or not a database: %2</source>
        <translation>Die Bibliotheksdatei „%1“ ist beschädigt oder keine Datenbank: %2</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; is not a Marlo library: it has no table %2.</source>
        <translation>Die Bibliotheksdatei „%1“ ist keine Marlo-Bibliothek: Ihr fehlt die Tabelle %2.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; is not a Marlo library: table %2 has no column %3.</source>
        <translation>Die Bibliotheksdatei „%1“ ist keine Marlo-Bibliothek: Der Tabelle %2 fehlt die Spalte %3.</translation>
    </message>
    <message>
        <source>The SQLite driver of Qt is not installed (package libqt6sql6-sqlite).</source>
        <translation>Der SQLite-Treiber von Qt ist nicht installiert (Paket libqt6sql6-sqlite).</translation>
    </message>
    <message>
        <source>No library file is configured.</source>
        <translation>Es ist keine Bibliotheksdatei eingestellt.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; does not exist.</source>
        <translation>Die Bibliotheksdatei „%1“ existiert nicht.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; is not a file.</source>
        <translation>Die Bibliotheksdatei „%1“ ist keine Datei.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; cannot be read: %2</source>
        <translation>Die Bibliotheksdatei „%1“ kann nicht gelesen werden: %2</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; is empty: it is not a Marlo library.</source>
        <translation>Die Bibliotheksdatei „%1“ ist leer: Sie ist keine Marlo-Bibliothek.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; is a Microsoft Access (Jet) database. Marlo keeps its library in SQLite files; this file cannot be used as it is.</source>
        <translation>Die Bibliotheksdatei „%1“ ist eine Microsoft-Access-Datenbank (Jet). Marlo führt seine Bibliothek in SQLite-Dateien; diese Datei kann so nicht verwendet werden.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; is not a Marlo library (it is not an SQLite database).</source>
        <translation>Die Bibliotheksdatei „%1“ ist keine Marlo-Bibliothek (sie ist keine SQLite-Datenbank).</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; lies in a folder that is not writable; the library keeps its journal files beside it.</source>
        <translation>Die Bibliotheksdatei „%1“ liegt in einem nicht beschreibbaren Ordner; die Bibliothek legt ihre Journaldateien daneben ab.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; cannot be written: %2</source>
        <translation>Die Bibliotheksdatei „%1“ kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; cannot be reached: %2.</source>
        <translation>Die Bibliotheksdatei „%1“ ist nicht erreichbar: %2.</translation>
    </message>
    <message>
        <source>The library file &quot;%1&quot; cannot be made: the template &quot;%2&quot; is missing.</source>
        <translation>Die Bibliotheksdatei „%1“ kann nicht angelegt werden: Die Vorlage „%2“ fehlt.</translation>
    </message>
    <message>
        <source>Syntax error in a library statement (bad date #%1#).</source>
        <translation>Syntaxfehler in einer Bibliotheksanweisung (ungültiges Datum #%1#).</translation>
    </message>
    <message>
        <source>The library is not open: %1</source>
        <translation>Die Bibliothek ist nicht geöffnet: %1</translation>
    </message>
    <message>
        <source>Missing database</source>
        <translation>Fehlende Datenbank</translation>
    </message>
    <message>
        <source>The Marlo-database does not exist.<byte value="xd"/>
You must specify a path and name for a database for Marlo to work.<byte value="xd"/>
<byte value="xd"/>
If you do not have a database for Marlo you cannot continue using the program<byte value="xd"/>
unless you reinstall the program.<byte value="xd"/>
<byte value="xd"/>
Do you wish to look for a database-file for Marlo?</source>
        <translation>Die Marlo-Datenbank existiert nicht.<byte value="xd"/>
Sie müssen Pfad und Namen einer Datenbank angeben, damit Marlo arbeiten kann.<byte value="xd"/>
<byte value="xd"/>
Wenn Sie keine Datenbank für Marlo haben, können Sie das Programm nicht weiter verwenden,<byte value="xd"/>
es sei denn, Sie installieren es neu.<byte value="xd"/>
<byte value="xd"/>
Möchten Sie nach einer Datenbankdatei für Marlo suchen?</translation>
    </message>
    <message>
        <source>Specify database</source>
        <translation>Datenbank angeben</translation>
    </message>
    <message>
        <source>Please specify a path for the database you wish to use...</source>
        <translation>Bitte geben Sie den Pfad der Datenbank an, die Sie verwenden möchten...</translation>
    </message>
    <message>
        <source>Missing Database</source>
        <translation>Fehlende Datenbank</translation>
    </message>
    <message>
        <source>Due to a missing database, the program cannot continue execution.</source>
        <translation>Wegen einer fehlenden Datenbank kann das Programm nicht weiterlaufen.</translation>
    </message>
</context>
<context>
    <name>mErrCodes</name>
    <message>
        <source>An unknown error occurred during resetting counter (parameter: %1).</source>
        <translation>Beim Zurücksetzen des Zählers ist ein unbekannter Fehler aufgetreten (Parameter: %1).</translation>
    </message>
    <message>
        <source>Download failed at address: %1</source>
        <translation>Auslesen fehlgeschlagen an Adresse: %1</translation>
    </message>
    <message>
        <source>Upload failed at address: %1</source>
        <translation>Übertragen fehlgeschlagen an Adresse: %1</translation>
    </message>
    <message>
        <source>The firmwarefile cannot be uploaded: line %1: %2.<byte value="xd"/>
Nothing was sent to the grip.</source>
        <translation>Die Firmware-Datei kann nicht übertragen werden: Zeile %1: %2.<byte value="xd"/>
An den Griff wurde nichts gesendet.</translation>
    </message>
    <message>
        <source>Invalid procedure call or argument</source>
        <translation>Unzulässiger Prozeduraufruf oder unzulässiges Argument</translation>
    </message>
    <message>
        <source>Overflow</source>
        <translation>Überlauf</translation>
    </message>
    <message>
        <source>Subscript out of range</source>
        <translation>Index außerhalb des gültigen Bereichs</translation>
    </message>
    <message>
        <source>Type mismatch</source>
        <translation>Typen unverträglich</translation>
    </message>
    <message>
        <source>Object variable or With block variable not set</source>
        <translation>Objektvariable oder With-Blockvariable nicht festgelegt</translation>
    </message>
    <message>
        <source>File not found</source>
        <translation>Datei nicht gefunden</translation>
    </message>
    <message>
        <source>Path/File access error</source>
        <translation>Fehler beim Zugriff auf Pfad/Datei</translation>
    </message>
    <message>
        <source>Invalid property value</source>
        <translation>Unzulässiger Eigenschaftswert</translation>
    </message>
    <message>
        <source>This key is already associated with an element of this collection</source>
        <translation>Dieser Schlüssel ist bereits einem Element dieser Auflistung zugeordnet</translation>
    </message>
    <message>
        <source>Port not open</source>
        <translation>Schnittstelle nicht geöffnet</translation>
    </message>
    <message>
        <source>Invalid port number</source>
        <translation>Ungültige Schnittstellennummer</translation>
    </message>
    <message>
        <source>Database error</source>
        <translation>Datenbankfehler</translation>
    </message>
    <message>
        <source>Application-defined or object-defined error</source>
        <translation>Anwendungs- oder objektdefinierter Fehler</translation>
    </message>
    <message>
        <source>An unknown error occurred during download of timing-values.</source>
        <translation>Beim Auslesen der Zeitwerte ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>The format of the versionstring passed to the routine was wrong.<byte value="xd"/>
This is due to a programmingerror. Please contact Tolvane support regarding a fix for this problem.<byte value="xd"/>
<byte value="xd"/>
Thank you very much for your patience.</source>
        <translation>Das Format der an die Routine übergebenen Versionsangabe war falsch.<byte value="xd"/>
Das liegt an einem Programmierfehler. Bitte wenden Sie sich wegen einer Behebung an den Tolvane-Support.<byte value="xd"/>
<byte value="xd"/>
Vielen Dank für Ihre Geduld.</translation>
    </message>
    <message>
        <source>There were not enough data in the communication input.</source>
        <translation>Im Kommunikationseingang waren nicht genug Daten.</translation>
    </message>
    <message>
        <source>It is not possible to delete the factory default setting.</source>
        <translation>Die Werkseinstellung kann nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>An unknown error occurred during download of battery-values.</source>
        <translation>Beim Auslesen der Akkuwerte ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An unknown error occurred during download of guninfo-values.</source>
        <translation>Beim Auslesen der Markierer-Informationen ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An unknown error occurred during download of countdown timer-values.</source>
        <translation>Beim Auslesen der Spieltimer-Werte ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An unknown error occurred during download of counter-values.</source>
        <translation>Beim Auslesen der Zählerstände ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An unknown error occurred during download of firmwaredata.</source>
        <translation>Beim Auslesen der Firmware-Daten ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An unknown error occurred during download of options-values.</source>
        <translation>Beim Auslesen der Optionswerte ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An unknown error occurred during upload of countdown timer-values.</source>
        <translation>Beim Übertragen der Spieltimer-Werte ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An unknown error occurred during upload of firmwaredata.</source>
        <translation>Beim Übertragen der Firmware-Daten ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An unknown error occurred during upload of timing-values.</source>
        <translation>Beim Übertragen der Zeitwerte ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>An unknown error occurred during upload of options-values.</source>
        <translation>Beim Übertragen der Optionswerte ist ein unbekannter Fehler aufgetreten.</translation>
    </message>
    <message>
        <source>Marlo is already communicating with the grip.<byte value="xd"/>
<byte value="xd"/>
Try again...</source>
        <translation>Marlo kommuniziert bereits mit dem Griff.<byte value="xd"/>
<byte value="xd"/>
Versuchen Sie es erneut...</translation>
    </message>
    <message>
        <source>Communication timed out!</source>
        <translation>Zeitüberschreitung bei der Kommunikation!</translation>
    </message>
    <message>
        <source>Check that</source>
        <translation>Prüfen Sie, ob</translation>
    </message>
    <message>
        <source>   - the grip is attached to the COM-port specified in</source>
        <translation>   - der Griff an der COM-Schnittstelle angeschlossen ist, die in den</translation>
    </message>
    <message>
        <source>     COM-settings</source>
        <translation>     COM-Einstellungen angegeben ist</translation>
    </message>
    <message>
        <source>   - the grip is turned on</source>
        <translation>   - der Griff eingeschaltet ist</translation>
    </message>
    <message>
        <source>   - the grip is in safe mode</source>
        <translation>   - der Griff gesichert ist (Safe-Modus)</translation>
    </message>
    <message>
        <source>   - COM-port is not in use by another program, driver</source>
        <translation>   - die COM-Schnittstelle nicht von einem anderen Programm, Treiber</translation>
    </message>
    <message>
        <source>     and/or device (e.g. RAS, modem, Palm Desktop etc.)</source>
        <translation>     und/oder Gerät belegt ist (z. B. RAS, Modem, Palm Desktop usw.)</translation>
    </message>
    <message>
        <source>If all of the above cases are true you might have</source>
        <translation>Trifft all das zu, ist möglicherweise</translation>
    </message>
    <message>
        <source>either the firmware or Marlo</source>
        <translation>entweder in der Firmware oder in Marlo</translation>
    </message>
    <message>
        <source>encountered an error in the program. In that case please</source>
        <translation>ein Programmfehler aufgetreten. Wenden Sie sich in diesem Fall bitte</translation>
    </message>
    <message>
        <source>contact Tolvane Products Supportunit for help.</source>
        <translation>an den Support von Tolvane Products.</translation>
    </message>
    <message>
        <source>Other applications may be interrupting the communication;</source>
        <translation>Andere Anwendungen stören womöglich die Kommunikation;</translation>
    </message>
    <message>
        <source>close all other applications using the COM-port and try again.</source>
        <translation>schließen Sie alle anderen Anwendungen, die die COM-Schnittstelle benutzen, und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Checksum error in data communicated from grip!</source>
        <translation>Prüfsummenfehler in den Daten vom Griff!</translation>
    </message>
    <message>
        <source>Data read from grip were corrupted. This may be due to</source>
        <translation>Die vom Griff gelesenen Daten waren beschädigt. Das kann an</translation>
    </message>
    <message>
        <source>noise on the cable (e.g. if the cable is too long or too close</source>
        <translation>Störungen auf dem Kabel liegen (z. B. wenn das Kabel zu lang ist oder zu nah</translation>
    </message>
    <message>
        <source>to a powerful magnetic source) or due to a programming error in</source>
        <translation>an einer starken magnetischen Quelle liegt) oder an einem Programmierfehler in</translation>
    </message>
    <message>
        <source>Try communicating again. If the problem persists please contact</source>
        <translation>Versuchen Sie die Kommunikation erneut. Besteht das Problem weiter, wenden Sie sich bitte an den</translation>
    </message>
    <message>
        <source>Tolvane Products Supportunit</source>
        <translation>Support von Tolvane Products</translation>
    </message>
    <message>
        <source>Marlo is already communicating with the grip.</source>
        <translation>Marlo kommuniziert bereits mit dem Griff.</translation>
    </message>
    <message>
        <source>Try again...</source>
        <translation>Versuchen Sie es erneut...</translation>
    </message>
    <message>
        <source>Out of memory</source>
        <translation>Nicht genügend Arbeitsspeicher</translation>
    </message>
</context>
<context>
    <name>mFirmware</name>
    <message>
        <source>%1: %2</source>
        <extracomment>A run-time error&apos;s message, then the file it is about.</extracomment>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>The file has no firmware header: the comment lines &quot;; Firmware:&quot;, &quot;; Boot:&quot;, &quot;; Protocol:&quot; and &quot;; Hardware:&quot; that name its builds are missing.</source>
        <translation>Die Datei hat keinen Firmware-Kopf: Die Kommentarzeilen „; Firmware:“, „; Boot:“, „; Protocol:“ und „; Hardware:“, die ihre Builds nennen, fehlen.</translation>
    </message>
    <message>
        <source>The file&apos;s firmware header names no %1 build.</source>
        <translation>Der Firmware-Kopf der Datei nennt kein %1-Build.</translation>
    </message>
    <message>
        <source>The file&apos;s %1 build &quot;%2&quot; is not a version (three numbers joined by &quot;.&quot;).</source>
        <translation>Das %1-Build „%2“ der Datei ist keine Version (drei durch „.“ verbundene Zahlen).</translation>
    </message>
    <message>
        <source>All (*.*)|*.*|Tolvane Firmware (*.tvf)|*.tvf</source>
        <translation>Alle (*.*)|*.*|Tolvane-Firmware (*.tvf)|*.tvf</translation>
    </message>
</context>
<context>
    <name>mFirmwareBackup</name>
    <message>
        <source>The grip&apos;s firmware could not be backed up, so nothing was written to the grip.</source>
        <translation>Die Firmware des Griffs konnte nicht gesichert werden; deshalb wurde nichts auf den Griff geschrieben.</translation>
    </message>
    <message>
        <source>a file of that name is in the way</source>
        <translation>eine Datei dieses Namens steht im Weg</translation>
    </message>
    <message>
        <source>the folder cannot be made</source>
        <translation>der Ordner kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>The grip&apos;s program could not be started again; the next command to the grip starts it.</source>
        <translation>Das Programm des Griffs konnte nicht wieder gestartet werden; der nächste Befehl an den Griff startet es.</translation>
    </message>
    <message>
        <source>%1: the backup folder %2 cannot take the backup: %3</source>
        <extracomment>A run-time error&apos;s message, the folder, then why it cannot take the backup.</extracomment>
        <translation>%1: Der Sicherungsordner %2 kann die Sicherung nicht aufnehmen: %3</translation>
    </message>
    <message>
        <source>Make the folder writable, or write the firmware without a backup.</source>
        <translation>Machen Sie den Ordner beschreibbar, oder schreiben Sie die Firmware ohne Sicherung.</translation>
    </message>
    <message>
        <source>The grip&apos;s firmware as it was before this write is backed up in %1.</source>
        <translation>Die Firmware des Griffs, wie sie vor diesem Schreiben war, ist in %1 gesichert.</translation>
    </message>
</context>
<context>
    <name>mFirmwareWorkflows</name>
    <message>
        <source>Loading firmwarefile to be uploaded</source>
        <translation>Die zu übertragende Firmware-Datei wird geladen</translation>
    </message>
    <message>
        <source>Preparing grip for upload</source>
        <translation>Der Griff wird für die Übertragung vorbereitet</translation>
    </message>
    <message>
        <source>Uploading firmware...</source>
        <translation>Firmware wird übertragen...</translation>
    </message>
    <message>
        <source>Verifying uploaded firmware...</source>
        <translation>Übertragene Firmware wird geprüft...</translation>
    </message>
    <message>
        <source>Firmwarefile version does not match the current version of the grip.<byte value="xd"/>
It is not possible to upload this firmwarefile to the grip.</source>
        <translation>Die Version der Firmware-Datei passt nicht zur aktuellen Version des Griffs.<byte value="xd"/>
Diese Firmware-Datei kann nicht in den Griff übertragen werden.</translation>
    </message>
    <message>
        <source>Firmwarefile version error</source>
        <translation>Versionsfehler der Firmware-Datei</translation>
    </message>
    <message>
        <source>Firmware uploaded successfully!<byte value="xd"/>
Press OK to start using the newly uploaded firmware.</source>
        <translation>Firmware erfolgreich übertragen!<byte value="xd"/>
Drücken Sie OK, um die neue Firmware zu verwenden.</translation>
    </message>
    <message>
        <source>Success!</source>
        <translation>Erfolg!</translation>
    </message>
    <message>
        <source>Firmware uploaded failed!<byte value="xd"/>
You should reset you grip (turn it off and then back on) and try uploading again.<byte value="xd"/>
If the problem persists, please contact Tolvane Products&apos; supportunit.</source>
        <translation>Übertragung der Firmware fehlgeschlagen!<byte value="xd"/>
Setzen Sie den Griff zurück (aus- und wieder einschalten) und übertragen Sie erneut.<byte value="xd"/>
Besteht das Problem weiter, wenden Sie sich bitte an den Support von Tolvane Products.</translation>
    </message>
    <message>
        <source>Failure!</source>
        <translation>Fehlschlag!</translation>
    </message>
    <message>
        <source>Firmware was put.</source>
        <translation>Firmware wurde übertragen.</translation>
    </message>
    <message>
        <source>Firmware was fetched.</source>
        <translation>Firmware wurde ausgelesen.</translation>
    </message>
    <message>
        <source>Open firmware file</source>
        <translation>Firmware-Datei öffnen</translation>
    </message>
    <message>
        <source>Save firmware file</source>
        <translation>Firmware-Datei speichern</translation>
    </message>
    <message>
        <source>Backing up the grip&apos;s firmware...</source>
        <translation>Die Firmware des Griffs wird gesichert...</translation>
    </message>
</context>
<context>
    <name>mGripCommands</name>
    <message>
        <source>Grip history</source>
        <translation>Griffverlauf</translation>
    </message>
</context>
<context>
    <name>mGripComparison</name>
    <message>
        <source>The grip holds these settings</source>
        <translation>Der Griff enthält diese Einstellungen</translation>
    </message>
    <message numerus="yes">
        <source>%n values differ</source>
        <translation>
            <numerusform>%n Wert weicht ab</numerusform>
            <numerusform>%n Werte weichen ab</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>mLibraryExchange</name>
    <message>
        <source>one byte</source>
        <translation>einem Byte</translation>
    </message>
    <message>
        <source>two bytes</source>
        <translation>zwei Bytes</translation>
    </message>
    <message>
        <source>%1: unknown field &quot;%2&quot;.</source>
        <translation>%1: unbekanntes Feld „%2“.</translation>
    </message>
    <message>
        <source>%1: %2 must be a text.</source>
        <translation>%1: %2 muss ein Text sein.</translation>
    </message>
    <message>
        <source>Not a Marlo library export: %1</source>
        <translation>Kein Marlo-Bibliotheksexport: %1</translation>
    </message>
    <message>
        <source>Cannot import %1: %2. Nothing was imported.</source>
        <translation>%1 kann nicht importiert werden: %2. Es wurde nichts importiert.</translation>
    </message>
    <message>
        <source>%1 is %2 characters long; at most %3 are taken</source>
        <translation>%1 ist %2 Zeichen lang; höchstens %3 werden übernommen</translation>
    </message>
    <message>
        <source>%1 is %2, but the grip carries it in %3 (0 to %4)</source>
        <translation>%1 ist %2, aber der Griff führt den Wert in %3 (0 bis %4)</translation>
    </message>
    <message>
        <source>%1: UserVariables must be an array.</source>
        <translation>%1: UserVariables muss ein Array sein.</translation>
    </message>
    <message>
        <source>%1, user variable %2</source>
        <translation>%1, Benutzervariable %2</translation>
    </message>
    <message>
        <source>%1 must be an object with sName and sValue.</source>
        <translation>%1 muss ein Objekt mit sName und sValue sein.</translation>
    </message>
    <message>
        <source>template %1</source>
        <translation>Vorlage %1</translation>
    </message>
    <message>
        <source>%1 is not an object.</source>
        <translation>%1 ist kein Objekt.</translation>
    </message>
    <message>
        <source>template %1 (&quot;%2&quot;)</source>
        <translation>Vorlage %1 („%2“)</translation>
    </message>
    <message>
        <source>%1: %2 must be a whole number from -2147483648 to 2147483647.</source>
        <translation>%1: %2 muss eine ganze Zahl von -2147483648 bis 2147483647 sein.</translation>
    </message>
    <message>
        <source>%1: %2 must be true or false.</source>
        <translation>%1: %2 muss true oder false sein.</translation>
    </message>
    <message>
        <source>%1: %2 must be a date written yyyy-mm-dd.</source>
        <translation>%1: %2 muss ein Datum der Form jjjj-mm-tt sein.</translation>
    </message>
    <message>
        <source>the JSON cannot be read (%1 at offset %2).</source>
        <translation>das JSON ist nicht lesbar (%1 an Position %2).</translation>
    </message>
    <message>
        <source>unknown member &quot;%1&quot; (expected {&quot;templates&quot;: [...]}).</source>
        <translation>unbekanntes Element „%1“ (erwartet: {&quot;templates&quot;: [...]}).</translation>
    </message>
    <message>
        <source>expected {&quot;templates&quot;: [...]}.</source>
        <translation>erwartet: {&quot;templates&quot;: [...]}.</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; cannot be written: %2</source>
        <translation>Die Datei „%1“ kann nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; does not exist.</source>
        <translation>Die Datei „%1“ existiert nicht.</translation>
    </message>
    <message>
        <source>The file &quot;%1&quot; cannot be read: %2</source>
        <translation>Die Datei „%1“ kann nicht gelesen werden: %2</translation>
    </message>
</context>
<context>
    <name>mLinkHelp</name>
    <message>
        <source>process %1</source>
        <translation>Prozess %1</translation>
    </message>
    <message>
        <source>%1 (process %2)</source>
        <translation>%1 (Prozess %2)</translation>
    </message>
    <message>
        <source>The serial port %1 does not exist.</source>
        <translation>Die serielle Schnittstelle %1 existiert nicht.</translation>
    </message>
    <message>
        <source>Permission denied opening %1.</source>
        <translation>Zugriff verweigert beim Öffnen von %1.</translation>
    </message>
    <message>
        <source>The serial port %1 is in use by %2.</source>
        <translation>Die serielle Schnittstelle %1 wird von %2 benutzt.</translation>
    </message>
    <message>
        <source>The serial port %1 is locked by the lock file %2, which no running program owns: a program that ended without removing it left it behind.</source>
        <translation>Die serielle Schnittstelle %1 ist durch die Sperrdatei %2 gesperrt, die keinem laufenden Programm gehört: Ein Programm hat sie beim Beenden zurückgelassen.</translation>
    </message>
    <message>
        <source>The serial port %1 is in use by another program (%2).</source>
        <translation>Die serielle Schnittstelle %1 wird von einem anderen Programm benutzt (%2).</translation>
    </message>
    <message>
        <source>The serial port %1 cannot be opened: %2</source>
        <translation>Die serielle Schnittstelle %1 kann nicht geöffnet werden: %2</translation>
    </message>
    <message>
        <source>Check the port number or the device in the options, and that the grip&apos;s cable is plugged in.</source>
        <translation>Prüfen Sie die Portnummer oder das Gerät in den Optionen und ob das Kabel des Griffs eingesteckt ist.</translation>
    </message>
    <message>
        <source>Your user must be in the &apos;dialout&apos; group to use serial ports: run &apos;sudo usermod -aG dialout $USER&apos;, then log out and in again.</source>
        <translation>Ihr Benutzer muss in der Gruppe „dialout“ sein, um serielle Schnittstellen zu benutzen: Führen Sie „sudo usermod -aG dialout $USER“ aus, melden Sie sich dann ab und wieder an.</translation>
    </message>
    <message>
        <source>Close %1, or wait until it has finished, and try again.</source>
        <translation>Schließen Sie %1 oder warten Sie, bis es fertig ist, und versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>Remove the stale lock file and try again: rm %1</source>
        <translation>Entfernen Sie die verwaiste Sperrdatei und versuchen Sie es erneut: rm %1</translation>
    </message>
    <message>
        <source>Check the port number or the device in the options.</source>
        <translation>Prüfen Sie die Portnummer oder das Gerät in den Optionen.</translation>
    </message>
    <message>
        <source>The serial port %1 vanished during the exchange: the grip&apos;s cable or USB adapter was unplugged, or the adapter lost its connection.</source>
        <translation>Die serielle Schnittstelle %1 ist während des Austauschs verschwunden: Das Kabel oder der USB-Adapter des Griffs wurde abgezogen, oder der Adapter hat die Verbindung verloren.</translation>
    </message>
    <message>
        <source>Plug it in again and retry. Check the device in the options: a USB adapter may come back under another name (such as /dev/ttyUSB1).</source>
        <translation>Stecken Sie ihn wieder ein und versuchen Sie es erneut. Prüfen Sie das Gerät in den Optionen: Ein USB-Adapter kann unter einem anderen Namen zurückkommen (etwa /dev/ttyUSB1).</translation>
    </message>
</context>
<context>
    <name>mMain</name>
    <message>
        <source>Confirmation</source>
        <translation>Bestätigung</translation>
    </message>
    <message>
        <source>The preferences file %1 has values that cannot be read; their defaults are used:</source>
        <translation>Die Einstellungsdatei %1 enthält Werte, die nicht lesbar sind; es gelten ihre Standardwerte:</translation>
    </message>
</context>
<context>
    <name>mModes</name>
    <message>
        <source>SemiAuto</source>
        <translation>Semi-Auto</translation>
    </message>
    <message>
        <source>Classic</source>
        <translation>Classic</translation>
    </message>
    <message>
        <source>Sniper</source>
        <translation>Sniper</translation>
    </message>
    <message>
        <source>Turbo</source>
        <translation>Turbo</translation>
    </message>
    <message>
        <source>Burst</source>
        <translation>Burst</translation>
    </message>
    <message>
        <source>NXL Full Auto</source>
        <translation>NXL Full Auto</translation>
    </message>
    <message>
        <source>Open Bolt</source>
        <translation>Open Bolt</translation>
    </message>
    <message>
        <source>Burst 3</source>
        <translation>Burst 3</translation>
    </message>
    <message>
        <source>Ramping</source>
        <translation>Ramping</translation>
    </message>
    <message>
        <source>Unlimited Ramping</source>
        <translation>Ramping unbegrenzt</translation>
    </message>
    <message>
        <source>100% Ramping</source>
        <translation>Ramping 100 %</translation>
    </message>
    <message>
        <source>75% Ramping</source>
        <translation>Ramping 75 %</translation>
    </message>
    <message>
        <source>50% Ramping</source>
        <translation>Ramping 50 %</translation>
    </message>
    <message>
        <source>33% Ramping</source>
        <translation>Ramping 33 %</translation>
    </message>
</context>
<context>
    <name>mSerialDevices</name>
    <message>
        <source>USB vendor %1</source>
        <translation>USB-Hersteller %1</translation>
    </message>
</context>
<context>
    <name>ucIProgress</name>
    <message>
        <source>Battery</source>
        <translation>Akku</translation>
    </message>
    <message>
        <source>%1 V</source>
        <translation>%1 V</translation>
    </message>
    <message>
        <source>No voltage read</source>
        <translation>Keine Spannung gelesen</translation>
    </message>
    <message>
        <source>low charge</source>
        <translation>niedrige Ladung</translation>
    </message>
    <message>
        <source>middle charge</source>
        <translation>mittlere Ladung</translation>
    </message>
    <message>
        <source>high charge</source>
        <translation>hohe Ladung</translation>
    </message>
</context>
<context>
    <name>ucSetsTemplateBasic</name>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>&amp;Date:</source>
        <translation>&amp;Datum:</translation>
    </message>
    <message>
        <source>Shot time:</source>
        <translation>Schusszeit:</translation>
    </message>
    <message>
        <source>ms</source>
        <translation>ms</translation>
    </message>
    <message>
        <source>Dwell time:</source>
        <translation>Dwell-Zeit:</translation>
    </message>
    <message>
        <source>Cycle time open:</source>
        <translation>Zykluszeit offen:</translation>
    </message>
    <message>
        <source>Loading time max:</source>
        <translation>Ladezeit max.:</translation>
    </message>
    <message>
        <source>Cycle time close:</source>
        <translation>Zykluszeit zu:</translation>
    </message>
    <message>
        <source>Rate of fire:</source>
        <translation>Feuerrate:</translation>
    </message>
    <message>
        <source>bps</source>
        <translation>bps</translation>
    </message>
</context>
<context>
    <name>ucUserVariables</name>
    <message>
        <source>User variables</source>
        <translation>Benutzervariablen</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
</context>
</TS>
