// The descriptions and hints of the schemas in German; the other half of german.js.
export const about = {
  "1 goes first.":
    "1 kommt zuerst.",
  "1 to 32 characters.":
    "1 bis 32 Zeichen.",
  "8 to 63 letters, digits, spaces and signs of a plain keyboard.":
    "8 bis 63 Buchstaben, Ziffern, Leerzeichen und Zeichen einer einfachen Tastatur.",
  "A channel ends as soon as the box leaves it.":
    "Ein Kanal endet, sobald der Empfänger ihn verlässt.",
  "A copy of all settings.":
    "Eine Kopie aller Einstellungen.",
  "A day of the week.":
    "Ein Wochentag.",
  "A day.":
    "Ein Tag.",
  "A device cannot open ports of another one.":
    "Ein Gerät kann keine Ports eines anderen öffnen.",
  "A device that is on this network now.":
    "Ein Gerät, das jetzt in diesem Netz ist.",
  "A device that the list names.":
    "Ein Gerät, das die Liste nennt.",
  "A folder on the storage.":
    "Ein Ordner auf dem Speicher.",
  "A mail is sent.":
    "Eine E-Mail wird verschickt.",
  "A mask such as 255.255.255.0.":
    "Eine Maske wie 255.255.255.0.",
  "A moment in universal time, or never.":
    "Ein Zeitpunkt in Weltzeit, oder nie.",
  "A moment in universal time.":
    "Ein Zeitpunkt in Weltzeit.",
  "A name such as video.example.net or *.games.example.":
    "Ein Name wie video.example.net oder *.games.example.",
  "A name that you choose.":
    "Ein Name, den Sie wählen.",
  "A name, with * for anything.":
    "Ein Name, mit * für Beliebiges.",
  "A network of somebody else.":
    "Ein Netz von jemand anderem.",
  "A network.":
    "Ein Netz.",
  "A newer version, if there is one.":
    "Eine neuere Version, falls es eine gibt.",
  "A part of the network.":
    "Ein Teil des Netzwerks.",
  "A record is kept.":
    "Es wird aufgezeichnet.",
  "A region and a city, such as Europe/Vienna.":
    "Eine Region und eine Stadt, wie Europe/Vienna.",
  "A region and a city.":
    "Eine Region und eine Stadt.",
  "A router makes networks, a bridge passes on, a repeater extends.":
    "Ein Router bildet Netze, eine Brücke reicht weiter, ein Repeater verlängert.",
  "A rule uses it.":
    "Eine Regel benutzt ihn.",
  "A server that decides who may join.":
    "Ein Server, der entscheidet, wer dazukommt.",
  "A server to ask.":
    "Ein Server, der gefragt wird.",
  "Access to files by FTP.":
    "Zugriff auf Dateien mit FTP.",
  "Access to files from computers.":
    "Zugriff auf Dateien von Computern.",
  "Addresses of eight groups.":
    "Adressen aus acht Gruppen.",
  "Addresses of four numbers.":
    "Adressen aus vier Zahlen.",
  "Addresses that are in use.":
    "Adressen, die in Gebrauch sind.",
  "After how long; 0 for never.":
    "Nach welcher Zeit; 0 für nie.",
  "After how many missing answers.":
    "Nach wie vielen fehlenden Antworten.",
  "Against known attacks.":
    "Gegen bekannte Angriffe.",
  "All addresses that begin alike, or nothing.":
    "Alle Adressen mit demselben Anfang, oder nichts.",
  "All addresses that begin alike.":
    "Alle Adressen mit demselben Anfang.",
  "All that is needed is set up.":
    "Alles Nötige ist eingerichtet.",
  "Also shows what few people need.":
    "Zeigt auch, was wenige brauchen.",
  "An IPv4 or IPv6 address, or nothing.":
    "Eine IPv4- oder IPv6-Adresse, oder nichts.",
  "An IPv4 or IPv6 address.":
    "Eine IPv4- oder IPv6-Adresse.",
  "An access point at the other end.":
    "Ein Zugangspunkt auf der Gegenseite.",
  "An account.":
    "Ein Konto.",
  "An address of four numbers, or nothing.":
    "Eine Adresse aus vier Zahlen, oder nichts.",
  "An address of four numbers.":
    "Eine Adresse aus vier Zahlen.",
  "An address of up to eight groups, or nothing.":
    "Eine Adresse aus bis zu acht Gruppen, oder nichts.",
  "An address of up to eight groups.":
    "Eine Adresse aus bis zu acht Gruppen.",
  "An address such as 192.168.77.20 or fd77:1::1.":
    "Eine Adresse wie 192.168.77.20 oder fd77:1::1.",
  "An address such as 192.168.77.20.":
    "Eine Adresse wie 192.168.77.20.",
  "An address such as house@example.org.":
    "Eine Adresse wie house@example.org.",
  "An address such as https://support.example.":
    "Eine Adresse wie https://support.example.",
  "An address that is in use.":
    "Eine Adresse, die in Gebrauch ist.",
  "An address, a slash and the number of leading bits, such as 192.168.77.0/24.":
    "Eine Adresse, ein Schrägstrich und die Zahl der führenden Bits, wie 192.168.77.0/24.",
  "An address, a slash and the number of leading bits, such as 2001:db8::/56.":
    "Eine Adresse, ein Schrägstrich und die Zahl der führenden Bits, wie 2001:db8::/56.",
  "Another connection steps in when the first fails.":
    "Eine andere Verbindung springt ein, wenn die erste ausfällt.",
  "Another machine that keeps the log too.":
    "Ein anderer Rechner, der das Protokoll auch behält.",
  "Anybody in the network may read.":
    "Jeder im Netz darf lesen.",
  "Anybody may read.":
    "Jeder darf lesen.",
  "As a share of the brightest.":
    "Als Anteil der größten Helligkeit.",
  "As a share of what is allowed.":
    "Als Anteil des Erlaubten.",
  "As many in a second.":
    "So viele in einer Sekunde.",
  "As many in one go.":
    "So viele auf einmal.",
  "Ask the servers below.":
    "Die Server unten fragen.",
  "Asked in this order.":
    "In dieser Reihenfolge gefragt.",
  "Asks a host for an answer.":
    "Bittet einen Rechner um Antwort.",
  "Asks every router on the way.":
    "Fragt jeden Router auf dem Weg.",
  "At what level a device is moved.":
    "Bei welchem Pegel ein Gerät wechselt.",
  "Blocked by name.":
    "Nach Namen gesperrt.",
  "Blocked by port.":
    "Nach Ports gesperrt.",
  "By a number of eight digits.":
    "Mit einer Zahl aus acht Ziffern.",
  "By address and port.":
    "Nach Adresse und Port.",
  "By address.":
    "Nach Adresse.",
  "By hardware address.":
    "Nach Hardware-Adresse.",
  "By mail.":
    "Mit E-Mail.",
  "By message to a phone.":
    "Mit Nachricht an ein Telefon.",
  "By port.":
    "Nach Port.",
  "By the button on the gateway.":
    "Mit der Taste am Router.",
  "Changes in packets that some old protocols need.":
    "Änderungen an Paketen, die manche alten Protokolle brauchen.",
  "Channels go to boxes that asked for them.":
    "Kanäle gehen nur an Empfänger, die sie wollten.",
  "Children can ask for more.":
    "Kinder können um mehr bitten.",
  "Clocks change.":
    "Die Uhren werden umgestellt.",
  "Counted from 0.":
    "Ab 0 gezählt.",
  "Counted from when it is switched on.":
    "Ab dem Einschalten gezählt.",
  "Dark at night.":
    "Nachts dunkel.",
  "Date, time and where they come from.":
    "Datum, Uhrzeit und woher sie kommen.",
  "Day by day.":
    "Tag für Tag.",
  "Devices also get addresses that stay in the house.":
    "Geräte bekommen auch Adressen, die im Haus bleiben.",
  "Devices can be woken.":
    "Geräte können geweckt werden.",
  "Devices can join.":
    "Geräte können dazukommen.",
  "Devices get such addresses too.":
    "Geräte bekommen auch solche Adressen.",
  "Devices get their addresses from the gateway.":
    "Geräte bekommen ihre Adressen vom Router.",
  "Devices make forwards for themselves.":
    "Geräte leiten selbst Ports weiter.",
  "Devices may do so.":
    "Geräte dürfen das.",
  "Devices may join this way.":
    "Geräte dürfen so dazukommen.",
  "Devices may sleep between packets.":
    "Geräte dürfen zwischen Paketen schlafen.",
  "Devices on this network do not see each other.":
    "Geräte in diesem Netz sehen einander nicht.",
  "Devices that always get the same address.":
    "Geräte, die immer dieselbe Adresse bekommen.",
  "Devices that are let in or kept out.":
    "Geräte, die eingelassen oder ausgeschlossen werden.",
  "Devices that have been in the network.":
    "Geräte, die im Netz waren.",
  "Devices that hear 5 GHz well are sent there.":
    "Geräte, die 5 GHz gut hören, kommen dorthin.",
  "Devices that no filter stops.":
    "Geräte, die kein Filter aufhält.",
  "Devices that stay where they are.":
    "Geräte, die bleiben, wo sie sind.",
  "Devices that the list does not bind.":
    "Geräte, für die die Liste nicht gilt.",
  "Digits and spaces, with + first for another country.":
    "Ziffern und Leerzeichen, mit + davor für ein anderes Land.",
  "Digits only.":
    "Nur Ziffern.",
  "Disks and sticks.":
    "Platten und Sticks.",
  "Disks, shared folders, printers.":
    "Datenträger, freigegebene Ordner, Drucker.",
  "Draws the last minutes.":
    "Zeichnet die letzten Minuten.",
  "Each hit is written to the log.":
    "Jeder Treffer kommt ins Protokoll.",
  "Eight digits.":
    "Acht Ziffern.",
  "Empty unless the provider tells one.":
    "Leer, wenn der Anbieter keinen nennt.",
  "Empty when it is hidden.":
    "Leer, wenn er versteckt ist.",
  "Encrypted connections.":
    "Verschlüsselte Verbindungen.",
  "Entries are sent there.":
    "Einträge werden dorthin geschickt.",
  "Entries below it are not kept.":
    "Einträge darunter werden nicht behalten.",
  "Every how many beacons sleeping devices are woken.":
    "Bei jedem wievielten Beacon schlafende Geräte geweckt werden.",
  "Everybody in the network may print.":
    "Jeder im Netz darf drucken.",
  "Everything goes through the VPN.":
    "Alles geht durch das VPN.",
  "Everything is switched on when it is needed.":
    "Alles wird eingeschaltet, wenn es gebraucht wird.",
  "Files cannot be changed.":
    "Dateien können nicht geändert werden.",
  "Firewall, parental control, VPN.":
    "Firewall, Kindersicherung, VPN.",
  "Fixed connections to other networks.":
    "Feste Verbindungen zu anderen Netzen.",
  "Folders that are emptied.":
    "Ordner, die geleert werden.",
  "Folders that others see.":
    "Ordner, die andere sehen.",
  "For a cut of the power.":
    "Für einen Stromausfall.",
  "For each packet.":
    "Für jedes Paket.",
  "For one phase.":
    "Für eine Phase.",
  "Four numbers from 0 to 255 with dots between, such as 192.168.77.20.":
    "Vier Zahlen von 0 bis 255 mit Punkten dazwischen, wie 192.168.77.20.",
  "From 0 to 7; 7 goes first.":
    "Von 0 bis 7; 7 kommt zuerst.",
  "From one time of day to another.":
    "Von einer Uhrzeit bis zu einer anderen.",
  "From the guests.":
    "Von den Gästen.",
  "From the internet.":
    "Aus dem Internet.",
  "From the most important to the least.":
    "Von der wichtigsten bis zur unwichtigsten.",
  "From where this page can be reached.":
    "Von wo diese Seite erreichbar ist.",
  "Groups of 0-9 and a-f with colons between, such as fd77:1::1.":
    "Gruppen aus 0-9 und a-f mit Doppelpunkten dazwischen, wie fd77:1::1.",
  "Guests must accept the terms first.":
    "Gäste müssen zuerst den Bedingungen zustimmen.",
  "Hides the others.":
    "Verbirgt die anderen.",
  "Hour and minute, such as 07:30.":
    "Stunde und Minute, wie 07:30.",
  "Hour and minute.":
    "Stunde und Minute.",
  "How a device may join.":
    "Wie ein Gerät dazukommt.",
  "How a failure is noticed.":
    "Wie ein Ausfall bemerkt wird.",
  "How both ends know each other.":
    "Woran beide Seiten einander erkennen.",
  "How busy it is.":
    "Wie beschäftigt er ist.",
  "How changes are noticed.":
    "Wie Änderungen bemerkt werden.",
  "How channels are passed on.":
    "Wie Kanäle weitergegeben werden.",
  "How data is encrypted.":
    "Wie Daten verschlüsselt werden.",
  "How devices get their addresses.":
    "Wie Geräte ihre Adressen bekommen.",
  "How far it looks back.":
    "Wie weit sie zurückreicht.",
  "How far the clock was off.":
    "Wie weit die Uhr abwich.",
  "How fast it is connected.":
    "Wie schnell es verbunden ist.",
  "How fast the connection is.":
    "Wie schnell die Verbindung ist.",
  "How fast the socket is.":
    "Wie schnell die Buchse ist.",
  "How files are kept.":
    "Wie Dateien abgelegt sind.",
  "How full it is.":
    "Wie voll er ist.",
  "How important an entry is.":
    "Wie wichtig ein Eintrag ist.",
  "How important it is.":
    "Wie wichtig sie ist.",
  "How it ended.":
    "Wie es endete.",
  "How it is doing.":
    "Wie es ihm geht.",
  "How it is sorted.":
    "Wie sortiert wird.",
  "How it stands beside other routers.":
    "Wie er neben anderen Routern steht.",
  "How it was built.":
    "Wie es gebaut ist.",
  "How it went.":
    "Wie es ging.",
  "How it works.":
    "Wie es arbeitet.",
  "How keys are agreed on.":
    "Wie Schlüssel vereinbart werden.",
  "How large it is.":
    "Wie groß sie ist.",
  "How long a device may keep an address.":
    "Wie lange ein Gerät eine Adresse behalten darf.",
  "How long devices believe it.":
    "Wie lange Geräte es glauben.",
  "How long it has been on the network.":
    "Wie lange es im Netz ist.",
  "How long it has been up.":
    "Wie lange sie besteht.",
  "How long it may send in one go.":
    "Wie lange sie am Stück senden darf.",
  "How long the device may keep it.":
    "Wie lange das Gerät sie behalten darf.",
  "How long this class waits before it may send.":
    "Wie lange diese Klasse wartet, bevor sie sendet.",
  "How long.":
    "Wie lange.",
  "How many answers.":
    "Wie viele Antworten.",
  "How many at once.":
    "Wie viele auf einmal.",
  "How many came in.":
    "Wie viele hereinkamen.",
  "How many entries are kept.":
    "Wie viele Einträge behalten werden.",
  "How many leading bits are the network's.":
    "Wie viele führende Bits zum Netz gehören.",
  "How many may join at once.":
    "Wie viele auf einmal dazukommen dürfen.",
  "How many minutes.":
    "Wie viele Minuten.",
  "How many packets were damaged.":
    "Wie viele Pakete beschädigt waren.",
  "How many packets.":
    "Wie viele Pakete.",
  "How many pages were refused.":
    "Wie viele Seiten abgelehnt wurden.",
  "How many ports.":
    "Wie viele Ports.",
  "How many questions.":
    "Wie viele Fragen.",
  "How many stand side by side.":
    "Wie viele nebeneinander stehen.",
  "How many steps it is from a clock.":
    "Wie viele Schritte er von einer Uhr entfernt ist.",
  "How many there are.":
    "Wie viele es gibt.",
  "How many there may be.":
    "Wie viele es geben darf.",
  "How many there were.":
    "Wie viele es waren.",
  "How many tries.":
    "Wie viele Versuche.",
  "How many wait.":
    "Wie viele warten.",
  "How many watch it.":
    "Wie viele ihn sehen.",
  "How many went out.":
    "Wie viele hinausgingen.",
  "How much data went over the internet.":
    "Wie viele Daten durch das Internet gingen.",
  "How much data.":
    "Wie viele Daten.",
  "How much is switched off.":
    "Wie viel abgeschaltet wird.",
  "How much is used.":
    "Wie viel benutzt ist.",
  "How much it holds.":
    "Wie viel er fasst.",
  "How much it may hold.":
    "Wie viel er fassen darf.",
  "How much they change.":
    "Um wie viel sie umgestellt werden.",
  "How often it is asked.":
    "Wie oft gefragt wird.",
  "How often it tells them.":
    "Wie oft er es ihnen sagt.",
  "How often keys are changed.":
    "Wie oft Schlüssel gewechselt werden.",
  "How often the key for all devices is changed.":
    "Wie oft der Schlüssel für alle Geräte gewechselt wird.",
  "How often the networks announce themselves.":
    "Wie oft die Netze sich ankündigen.",
  "How often this area was changed.":
    "Wie oft dieser Bereich geändert wurde.",
  "How often, even without a change.":
    "Wie oft, auch ohne Änderung.",
  "How often.":
    "Wie oft.",
  "How strict it is.":
    "Wie streng sie ist.",
  "How strong it is.":
    "Wie stark es ist.",
  "How the address comes about.":
    "Wie die Adresse zustande kommt.",
  "How the bridge is protected.":
    "Wie die Brücke geschützt ist.",
  "How the connection is protected.":
    "Wie die Verbindung geschützt ist.",
  "How the data travels.":
    "Wie die Daten reisen.",
  "How the folder is reached.":
    "Wie der Ordner erreicht wird.",
  "How the gateway is doing.":
    "Wie es dem Router geht.",
  "How the gateway tells devices that it is there.":
    "Wie der Router den Geräten sagt, dass er da ist.",
  "How the line works.":
    "Wie die Leitung arbeitet.",
  "How the network is protected.":
    "Wie das Netz geschützt ist.",
  "How the program talks.":
    "Wie das Programm spricht.",
  "How the provider is told.":
    "Wie der Anbieter es erfährt.",
  "How they come about.":
    "Wie sie zustande kommen.",
  "How to reach them.":
    "Wie sie zu erreichen sind.",
  "How warm it is.":
    "Wie warm er ist.",
  "How well it is heard.":
    "Wie gut es gehört wird.",
  "How you are told.":
    "Wie Sie es erfahren.",
  "In a day; 0 for no limit.":
    "An einem Tag; 0 für keine Grenze.",
  "In this month.":
    "In diesem Monat.",
  "It is in the network now.":
    "Es ist jetzt im Netz.",
  "It is switched on.":
    "Er ist eingeschaltet.",
  "It may not use the network.":
    "Es darf das Netz nicht benutzen.",
  "It was answered.":
    "Sie ist beantwortet.",
  "Its entries are kept.":
    "Seine Einträge werden behalten.",
  "Its other addresses.":
    "Seine anderen Adressen.",
  "Its own number.":
    "Seine eigene Nummer.",
  "Its place on the way.":
    "Sein Platz auf dem Weg.",
  "Keeps a name for the gateway's changing address.":
    "Hält einen Namen für die wechselnde Adresse des Routers aktuell.",
  "Kinds of pages.":
    "Arten von Seiten.",
  "Lets devices join without the password.":
    "Lässt Geräte ohne Passwort dazu.",
  "Lets the internet reach a device in the house.":
    "Lässt das Internet ein Gerät im Haus erreichen.",
  "Letters, digits and hyphens.":
    "Buchstaben, Ziffern und Bindestriche.",
  "Letters, digits, hyphens and dots, such as host.example.org.":
    "Buchstaben, Ziffern, Bindestriche und Punkte, wie host.example.org.",
  "Light or dark.":
    "Hell oder dunkel.",
  "Local networks, and the ways to the internet.":
    "Lokale Netze und die Wege ins Internet.",
  "Longer packets are sent in parts.":
    "Längere Pakete werden in Teilen gesendet.",
  "Longer packets ask for the channel first.":
    "Längere Pakete fragen zuerst um den Kanal.",
  "Looked at in this order.":
    "In dieser Reihenfolge geprüft.",
  "Looks for new media.":
    "Sucht nach neuen Medien.",
  "Looks whether a host can be reached.":
    "Sieht nach, ob ein Rechner erreichbar ist.",
  "Mails about attacks.":
    "E-Mails über Angriffe.",
  "Mails are sent.":
    "E-Mails werden verschickt.",
  "May connect.":
    "Darf sich verbinden.",
  "Messages are sent.":
    "Nachrichten werden verschickt.",
  "Moves devices to the faster band.":
    "Bringt Geräte auf das schnellere Band.",
  "Name, place and language of the gateway.":
    "Name, Ort und Sprache des Routers.",
  "Named pages.":
    "Benannte Seiten.",
  "Names for ports.":
    "Namen für Ports.",
  "Names with slashes before them, such as /mnt/usb1/p1/photos.":
    "Namen mit Schrägstrichen davor, wie /mnt/usb1/p1/photos.",
  "New connections are limited.":
    "Neue Verbindungen werden begrenzt.",
  "Newer versions are installed at night.":
    "Neuere Versionen werden nachts installiert.",
  "Newer versions are installed.":
    "Neuere Versionen werden installiert.",
  "None for all.":
    "Keine für alle.",
  "Of each core.":
    "Jedes Kerns.",
  "Of media.":
    "Von Medien.",
  "Of one core.":
    "Eines Kerns.",
  "Of the bandwidth.":
    "An der Bandbreite.",
  "Of the curve.":
    "Der Kurve.",
  "Of the month.":
    "Im Monat.",
  "Of the protocol.":
    "Des Protokolls.",
  "Older entries are removed.":
    "Ältere Einträge werden entfernt.",
  "Older ones are removed.":
    "Ältere werden entfernt.",
  "On this day.":
    "An diesem Tag.",
  "One Wi-Fi network of the radio.":
    "Ein WLAN des Funkmoduls.",
  "One address, a network, or any.":
    "Eine Adresse, ein Netz oder any für alle.",
  "One after the other.":
    "Einer nach dem anderen.",
  "One channel.":
    "Ein Kanal.",
  "One child.":
    "Ein Kind.",
  "One class of traffic.":
    "Eine Klasse von Verkehr.",
  "One class.":
    "Eine Klasse.",
  "One connection.":
    "Eine Verbindung.",
  "One day.":
    "Ein Tag.",
  "One device gets all that nobody else gets.":
    "Ein Gerät bekommt alles, was sonst niemand bekommt.",
  "One device.":
    "Ein Gerät.",
  "One disk.":
    "Ein Datenträger.",
  "One end of the connection.":
    "Ein Ende der Verbindung.",
  "One end of the traffic.":
    "Ein Ende des Verkehrs.",
  "One entry.":
    "Ein Eintrag.",
  "One folder.":
    "Ein Ordner.",
  "One for each child.":
    "Eines für jedes Kind.",
  "One for each class of traffic.":
    "Eine für jede Klasse von Verkehr.",
  "One for each network.":
    "Einer für jedes Netz.",
  "One for each topic.":
    "Eine für jedes Thema.",
  "One forward.":
    "Eine Weiterleitung.",
  "One interface.":
    "Eine Schnittstelle.",
  "One kind.":
    "Eine Art.",
  "One level.":
    "Eine Stufe.",
  "One light.":
    "Eine Leuchte.",
  "One message.":
    "Eine Meldung.",
  "One mode.":
    "Eine Betriebsart.",
  "One network of the house.":
    "Ein Netz des Hauses.",
  "One option.":
    "Eine Option.",
  "One part of the network.":
    "Ein Teil des Netzwerks.",
  "One part.":
    "Ein Teil.",
  "One person.":
    "Eine Person.",
  "One printer.":
    "Ein Drucker.",
  "One radio of the gateway.":
    "Ein Funkmodul des Routers.",
  "One request.":
    "Eine Anfrage.",
  "One route.":
    "Eine Route.",
  "One router.":
    "Ein Router.",
  "One rule.":
    "Eine Regel.",
  "One server.":
    "Ein Server.",
  "One service.":
    "Ein Dienst.",
  "One site.":
    "Eine Seite.",
  "One socket.":
    "Eine Buchse.",
  "One step.":
    "Ein Schritt.",
  "One thing that it can do.":
    "Eine Sache, die es kann.",
  "One tile.":
    "Eine Kachel.",
  "One time of the week.":
    "Eine Zeit der Woche.",
  "One topic.":
    "Ein Thema.",
  "One update.":
    "Ein Update.",
  "One way to the internet.":
    "Ein Weg ins Internet.",
  "One word.":
    "Ein Wort.",
  "Opens ports when a device in the house asks for it.":
    "Öffnet Ports, wenn ein Gerät im Haus danach fragt.",
  "Other access points that are connected by radio.":
    "Andere Zugangspunkte, die über Funk verbunden sind.",
  "Others connect to the gateway.":
    "Andere verbinden sich mit dem Router.",
  "Packets are not confirmed.":
    "Pakete werden nicht bestätigt.",
  "Packets carry the number below.":
    "Pakete tragen die Nummer unten.",
  "Packets in parts are dropped.":
    "Pakete in Teilen werden verworfen.",
  "Packets of this protocol are changed.":
    "Pakete dieses Protokolls werden geändert.",
  "Packets with impossible senders are dropped.":
    "Pakete mit unmöglichen Absendern werden verworfen.",
  "Pages with these words.":
    "Seiten mit diesen Wörtern.",
  "Pictures, music and films for players.":
    "Bilder, Musik und Filme für Abspielgeräte.",
  "Players find what is in it.":
    "Abspielgeräte finden, was darin ist.",
  "Port forwards, filters, dynamic DNS and other services.":
    "Portweiterleitungen, Filter, dynamisches DNS und andere Dienste.",
  "Printers at the gateway.":
    "Drucker am Router.",
  "Radios, networks and who may join them.":
    "Funkmodule, Netze und wer dazukommen darf.",
  "Routes are learned here.":
    "Hier werden Routen gelernt.",
  "Routes are learned.":
    "Routen werden gelernt.",
  "Routes are told here.":
    "Hier werden Routen mitgeteilt.",
  "Routes that routers tell each other.":
    "Routen, die Router einander mitteilen.",
  "Routes that you set.":
    "Routen, die Sie setzen.",
  "Rules for addresses of eight groups.":
    "Regeln für Adressen aus acht Gruppen.",
  "Rules for addresses of four numbers.":
    "Regeln für Adressen aus vier Zahlen.",
  "Shown before the first connection.":
    "Vor der ersten Verbindung gezeigt.",
  "Shows guests too.":
    "Zeigt auch Gäste.",
  "Shows the provider another address than the gateway's own.":
    "Zeigt dem Anbieter eine andere Adresse als die eigene des Routers.",
  "Shows the time since the connection came up.":
    "Zeigt die Zeit, seit die Verbindung steht.",
  "Sites, services and devices that are blocked.":
    "Seiten, Dienste und Geräte, die gesperrt sind.",
  "Six pairs of 0-9 and A-F with colons between, such as 02:00:5E:10:00:14.":
    "Sechs Paare aus 0-9 und A-F mit Doppelpunkten dazwischen, wie 02:00:5E:10:00:14.",
  "Small letters, digits, - and _, with a letter first, up to 32 characters.":
    "Kleinbuchstaben, Ziffern, - und _, mit einem Buchstaben am Anfang, bis zu 32 Zeichen.",
  "Some days of the week.":
    "Einige Wochentage.",
  "Somebody has read it.":
    "Jemand hat sie gelesen.",
  "Somebody tries door after door.":
    "Jemand probiert Tür um Tür.",
  "Switches networks off and on by the clock.":
    "Schaltet Netze nach der Uhr aus und ein.",
  "Switches off what is not needed.":
    "Schaltet ab, was nicht gebraucht wird.",
  "Television is passed on.":
    "Fernsehen wird weitergegeben.",
  "Television of the provider.":
    "Fernsehen des Anbieters.",
  "The Wi-Fi networks of this radio.":
    "Die WLANs dieses Funkmoduls.",
  "The address below is used.":
    "Die Adresse unten wird benutzt.",
  "The address is kept for it.":
    "Die Adresse wird für es freigehalten.",
  "The address that the device's network card carries.":
    "Die Adresse, die die Netzwerkkarte des Geräts trägt.",
  "The address that the name has.":
    "Die Adresse, die der Name hat.",
  "The address that the provider sees.":
    "Die Adresse, die der Anbieter sieht.",
  "The address that this network sends with.":
    "Die Adresse, mit der dieses Netz sendet.",
  "The bridge's own number.":
    "Die eigene Nummer der Brücke.",
  "The bridges below are connected.":
    "Die Brücken unten sind verbunden.",
  "The channel that it sends on.":
    "Der Kanal, auf dem es sendet.",
  "The channels that the gateway may choose.":
    "Die Kanäle, die der Router wählen darf.",
  "The cipher.":
    "Die Verschlüsselung.",
  "The class's own number.":
    "Die eigene Nummer der Klasse.",
  "The colour when all is well.":
    "Die Farbe, wenn alles gut ist.",
  "The connection is used.":
    "Die Verbindung wird benutzt.",
  "The connection's own number.":
    "Die eigene Nummer der Verbindung.",
  "The copy holds the passwords too.":
    "Die Kopie enthält auch die Passwörter.",
  "The country whose radio rules apply, as two letters.":
    "Das Land, dessen Funkregeln gelten, als zwei Buchstaben.",
  "The day it was made.":
    "Der Tag, an dem sie gebaut wurde.",
  "The days of the week on which it applies.":
    "Die Wochentage, an denen es gilt.",
  "The device in the house.":
    "Das Gerät im Haus.",
  "The device is exposed to the internet.":
    "Das Gerät ist aus dem Internet erreichbar.",
  "The device itself: users, devices, clock, firmware.":
    "Das Gerät selbst: Benutzer, Geräte, Uhr, Firmware.",
  "The device's own number.":
    "Die eigene Nummer des Geräts.",
  "The devices of the child.":
    "Die Geräte des Kindes.",
  "The devices of the list.":
    "Die Geräte der Liste.",
  "The entry's own number.":
    "Die eigene Nummer des Eintrags.",
  "The fewest slots that it may draw.":
    "Die wenigsten Zeitschlitze, die sie ziehen darf.",
  "The firewall works.":
    "Die Firewall arbeitet.",
  "The first address of the range.":
    "Die erste Adresse des Bereichs.",
  "The first address to give.":
    "Die erste Adresse, die vergeben wird.",
  "The first line that is shown.":
    "Die erste Zeile, die gezeigt wird.",
  "The first makes the connection, the second carries data.":
    "Die erste stellt die Verbindung her, die zweite trägt Daten.",
  "The first port of the range.":
    "Der erste Port des Bereichs.",
  "The first that fits counts.":
    "Die erste, die passt, gilt.",
  "The folder's own number.":
    "Die eigene Nummer des Ordners.",
  "The forward is active.":
    "Die Weiterleitung ist aktiv.",
  "The forward's own number.":
    "Die eigene Nummer der Weiterleitung.",
  "The forwards are active.":
    "Die Weiterleitungen sind aktiv.",
  "The frequencies that it uses.":
    "Die Frequenzen, die es benutzt.",
  "The gateway connects to another one.":
    "Der Router verbindet sich mit einem anderen.",
  "The gateway gives addresses.":
    "Der Router vergibt Adressen.",
  "The gateway looks for the quietest channel at night.":
    "Der Router sucht nachts den ruhigsten Kanal.",
  "The gateway watches the connection.":
    "Der Router überwacht die Verbindung.",
  "The gateway's address on the internet.":
    "Die Adresse des Routers im Internet.",
  "The group that computers show.":
    "Die Gruppe, die Computer zeigen.",
  "The heading of the page.":
    "Die Überschrift der Seite.",
  "The language in use, as two letters.":
    "Die benutzte Sprache, als zwei Buchstaben.",
  "The language of messages and mails.":
    "Die Sprache der Meldungen und E-Mails.",
  "The last address of the range.":
    "Die letzte Adresse des Bereichs.",
  "The last address to give.":
    "Die letzte Adresse, die vergeben wird.",
  "The last port of the range.":
    "Der letzte Port des Bereichs.",
  "The latest entries.":
    "Die neuesten Einträge.",
  "The latest messages.":
    "Die neuesten Meldungen.",
  "The light is used.":
    "Die Leuchte wird benutzt.",
  "The light stays dark in these hours.":
    "Die Leuchte bleibt in diesen Stunden dunkel.",
  "The lights on the front.":
    "Die Leuchten an der Vorderseite.",
  "The list counts.":
    "Die Liste gilt.",
  "The list.":
    "Die Liste.",
  "The message's own number.":
    "Die eigene Nummer der Meldung.",
  "The moment that follows from it.":
    "Der Zeitpunkt, der daraus folgt.",
  "The most slots that it may draw.":
    "Die meisten Zeitschlitze, die sie ziehen darf.",
  "The name is kept up to date.":
    "Der Name wird aktuell gehalten.",
  "The name is not announced.":
    "Der Name wird nicht angekündigt.",
  "The name of a machine in the network.":
    "Der Name eines Rechners im Netz.",
  "The name of the disk.":
    "Der Name des Datenträgers.",
  "The name of the phone.":
    "Der Name des Telefons.",
  "The name that computers show.":
    "Der Name, den Computer zeigen.",
  "The name that leads here.":
    "Der Name, der hierher führt.",
  "The name that phones and computers show.":
    "Der Name, den Telefone und Computer zeigen.",
  "The name that the device gives itself.":
    "Der Name, den das Gerät sich selbst gibt.",
  "The name that the provider knows you by.":
    "Der Name, unter dem der Anbieter Sie kennt.",
  "The name that this end gives.":
    "Der Name, den diese Seite nennt.",
  "The name to log in with.":
    "Der Name zum Anmelden.",
  "The network of the house.":
    "Das Netz des Hauses.",
  "The network over there.":
    "Das Netz auf der anderen Seite.",
  "The network that it leads to.":
    "Das Netz, zu dem sie führt.",
  "The network that the house got.":
    "Das Netz, das das Haus bekam.",
  "The network's own number.":
    "Die eigene Nummer des Netzes.",
  "The networks around, as the last search saw them.":
    "Die Netze ringsum, wie die letzte Suche sie sah.",
  "The networks of the house.":
    "Die Netze des Hauses.",
  "The newest that is spoken.":
    "Die neueste, die gesprochen wird.",
  "The number of a radio channel.":
    "Die Nummer eines Funkkanals.",
  "The number of the class.":
    "Die Nummer der Klasse.",
  "The number of the connection to use.":
    "Die Nummer der Verbindung, die benutzt wird.",
  "The number of the internet connection.":
    "Die Nummer der Internetverbindung.",
  "The number of the one that steps in.":
    "Die Nummer der Verbindung, die einspringt.",
  "The number of the option.":
    "Die Nummer der Option.",
  "The number of the rule.":
    "Die Nummer der Regel.",
  "The number of the socket.":
    "Die Nummer der Buchse.",
  "The number of the virtual network behind it; 0 for none.":
    "Die Nummer des virtuellen Netzes dahinter; 0 für keines.",
  "The number of the virtual network; 0 for none.":
    "Die Nummer des virtuellen Netzes; 0 für keines.",
  "The number on its label.":
    "Die Nummer auf dem Aufkleber.",
  "The number that a program listens on.":
    "Die Nummer, an der ein Programm zuhört.",
  "The number to call.":
    "Die Nummer zum Anrufen.",
  "The number to type on the device.":
    "Die Nummer, die am Gerät einzugeben ist.",
  "The old display, notifications, usage.":
    "Die alte Anzeige, Benachrichtigungen, Nutzung.",
  "The oldest that is spoken.":
    "Die älteste, die gesprochen wird.",
  "The other access points.":
    "Die anderen Zugangspunkte.",
  "The other gateway.":
    "Der andere Router.",
  "The page can be reached.":
    "Die Seite ist erreichbar.",
  "The part of the network.":
    "Der Teil des Netzwerks.",
  "The parts of the disk.":
    "Die Teile des Datenträgers.",
  "The pause between symbols, in nanoseconds.":
    "Die Pause zwischen Symbolen, in Nanosekunden.",
  "The port on the internet.":
    "Der Port im Internet.",
  "The port or the Wi-Fi network.":
    "Der Port oder das WLAN.",
  "The port with encryption.":
    "Der Port mit Verschlüsselung.",
  "The port with encryption; 0 for none.":
    "Der Port mit Verschlüsselung; 0 für keinen.",
  "The port without encryption; 0 for none.":
    "Der Port ohne Verschlüsselung; 0 für keinen.",
  "The ports from the first to the last, both included.":
    "Die Ports vom ersten bis zum letzten, beide eingeschlossen.",
  "The ports that are meant.":
    "Die Ports, die gemeint sind.",
  "The ports that files travel on.":
    "Die Ports, auf denen Dateien reisen.",
  "The printer's own number.":
    "Die eigene Nummer des Druckers.",
  "The profile counts.":
    "Das Profil gilt.",
  "The profile's own number.":
    "Die eigene Nummer des Profils.",
  "The profiles count.":
    "Die Profile gelten.",
  "The program of the gateway.":
    "Das Programm des Routers.",
  "The provider tells it.":
    "Der Anbieter nennt sie.",
  "The provider's password.":
    "Das Passwort des Anbieters.",
  "The radio sends.":
    "Das Funkmodul sendet.",
  "The radio that it is reached by.":
    "Das Funkmodul, über das sie erreicht wird.",
  "The radio's own address.":
    "Die eigene Adresse des Funkmoduls.",
  "The radio's own number.":
    "Die eigene Nummer des Funkmoduls.",
  "The radios of the gateway.":
    "Die Funkmodule des Routers.",
  "The rate towards the device.":
    "Die Rate zum Gerät.",
  "The rate towards the gateway.":
    "Die Rate zum Router.",
  "The request's own number.":
    "Die eigene Nummer der Anfrage.",
  "The route is used.":
    "Die Route wird benutzt.",
  "The route's own number.":
    "Die eigene Nummer der Route.",
  "The router on the way.":
    "Der Router auf dem Weg.",
  "The routers on the way.":
    "Die Router auf dem Weg.",
  "The routes are used.":
    "Die Routen werden benutzt.",
  "The rule is followed.":
    "Die Regel wird befolgt.",
  "The rule's own number.":
    "Die eigene Nummer der Regel.",
  "The rules are followed.":
    "Die Regeln werden befolgt.",
  "The schedule is followed.":
    "Der Zeitplan wird befolgt.",
  "The server runs.":
    "Der Server läuft.",
  "The service's own number.":
    "Die eigene Nummer des Dienstes.",
  "The signal as a share of the best.":
    "Das Signal als Anteil des besten.",
  "The smallest wins.":
    "Die kleinste gewinnt.",
  "The sockets of television boxes.":
    "Die Buchsen von Fernsehempfängern.",
  "The sockets of the gateway.":
    "Die Buchsen des Routers.",
  "The temperature now.":
    "Die Temperatur jetzt.",
  "The time until the answer came.":
    "Die Zeit, bis die Antwort kam.",
  "The times of day.":
    "Die Uhrzeiten.",
  "The tunnel is used.":
    "Der Tunnel wird benutzt.",
  "The tunnel's own number.":
    "Die eigene Nummer des Tunnels.",
  "The virtual network of the provider.":
    "Das virtuelle Netz des Anbieters.",
  "The ways to the internet.":
    "Die Wege ins Internet.",
  "The word any, an address such as 192.168.77.20, or a network such as 192.168.77.0/24.":
    "Das Wort any, eine Adresse wie 192.168.77.20 oder ein Netz wie 192.168.77.0/24.",
  "The word any, an address such as fd77:1::1, or a network such as fd77:1::/64.":
    "Das Wort any, eine Adresse wie fd77:1::1 oder ein Netz wie fd77:1::/64.",
  "There is a battery.":
    "Es gibt eine Batterie.",
  "There is a device at the other end.":
    "Am anderen Ende ist ein Gerät.",
  "This step is done.":
    "Dieser Schritt ist erledigt.",
  "Three numbers.":
    "Drei Zahlen.",
  "Three tries.":
    "Drei Versuche.",
  "Too many new connections.":
    "Zu viele neue Verbindungen.",
  "Towards the guests.":
    "Zu den Gästen.",
  "Towards the internet.":
    "Ins Internet.",
  "Traffic is sorted.":
    "Verkehr wird sortiert.",
  "Traffic since the last start.":
    "Verkehr seit dem letzten Start.",
  "Two capital letters, such as AT.":
    "Zwei Großbuchstaben, wie AT.",
  "Two letters.":
    "Zwei Buchstaben.",
  "Two small letters, such as en.":
    "Zwei Kleinbuchstaben, wie en.",
  "Until the answer came.":
    "Bis die Antwort kam.",
  "Up to 15 capital letters, digits and hyphens.":
    "Bis zu 15 Großbuchstaben, Ziffern und Bindestriche.",
  "Up to 64 characters on one line.":
    "Bis zu 64 Zeichen in einer Zeile.",
  "Voice and video go before the rest.":
    "Sprache und Video gehen vor.",
  "Wakes devices that sleep.":
    "Weckt Geräte, die schlafen.",
  "Ways to other networks.":
    "Wege zu anderen Netzen.",
  "What a guest agrees to.":
    "Wozu ein Gast sich verpflichtet.",
  "What a user has chosen.":
    "Was ein Benutzer gewählt hat.",
  "What arrives.":
    "Was ankommt.",
  "What belongs to which class; the first that fits counts.":
    "Was zu welcher Klasse gehört; die erste Regel, die passt, gilt.",
  "What both ends agreed on.":
    "Worauf sich beide Seiten geeinigt haben.",
  "What both ends must know.":
    "Was beide Seiten wissen müssen.",
  "What came in.":
    "Was hereinkam.",
  "What came of it.":
    "Was dabei herauskam.",
  "What can be chosen.":
    "Was gewählt werden kann.",
  "What can be reached.":
    "Was erreichbar ist.",
  "What can be woken.":
    "Was geweckt werden kann.",
  "What children may use, and when.":
    "Was Kinder benutzen dürfen, und wann.",
  "What comes first.":
    "Was zuerst kommt.",
  "What could be freed.":
    "Was frei werden könnte.",
  "What devices are told.":
    "Was Geräten gesagt wird.",
  "What devices got.":
    "Was Geräte bekamen.",
  "What devices have made.":
    "Was Geräte eingerichtet haben.",
  "What devices may speak.":
    "Was Geräte sprechen dürfen.",
  "What devices must know to join.":
    "Was Geräte wissen müssen, um dazuzukommen.",
  "What devices sent.":
    "Was Geräte sendeten.",
  "What else devices are told.":
    "Was Geräten noch gesagt wird.",
  "What else is heard.":
    "Was sonst zu hören ist.",
  "What else is known.":
    "Was sonst bekannt ist.",
  "What else it shows.":
    "Was sie sonst zeigt.",
  "What follows the names of devices.":
    "Was auf die Namen von Geräten folgt.",
  "What guests may use together; 0 for no limit.":
    "Was Gäste zusammen benutzen dürfen; 0 für keine Grenze.",
  "What guests see and get.":
    "Was Gäste sehen und bekommen.",
  "What happened, and where it is kept.":
    "Was geschah, und wo es aufgehoben wird.",
  "What happened.":
    "Was geschah.",
  "What happens to it.":
    "Was damit geschieht.",
  "What happens to them in that time.":
    "Was in dieser Zeit mit ihnen geschieht.",
  "What happens to what no rule names.":
    "Was mit dem geschieht, was keine Regel nennt.",
  "What happens when.":
    "Was wann geschieht.",
  "What is compared.":
    "Was verglichen wird.",
  "What is forwarded where.":
    "Was wohin weitergeleitet wird.",
  "What is kept.":
    "Was aufgehoben wird.",
  "What is looked for.":
    "Wonach gesucht wird.",
  "What is meant.":
    "Was gemeint ist.",
  "What is not used.":
    "Was nicht benutzt ist.",
  "What is offered, phase by phase.":
    "Was angeboten wird, Phase um Phase.",
  "What is opened then.":
    "Was dann geöffnet wird.",
  "What is plugged in.":
    "Was eingesteckt ist.",
  "What is shared with whom.":
    "Was mit wem geteilt wird.",
  "What is shown first.":
    "Was zuerst gezeigt wird.",
  "What is watched now.":
    "Was jetzt gesehen wird.",
  "What it does now.":
    "Was es jetzt tut.",
  "What it falls back to.":
    "Worauf er zurückfällt.",
  "What it gets in any case.":
    "Was sie auf jeden Fall bekommt.",
  "What it gets when nobody else wants it.":
    "Was sie bekommt, wenn niemand sonst es will.",
  "What it is about.":
    "Worum es geht.",
  "What it is.":
    "Was es ist.",
  "What it shows.":
    "Was sie zeigt.",
  "What its value is.":
    "Was ihr Wert ist.",
  "What kind of device it is.":
    "Was für ein Gerät es ist.",
  "What mails are about.":
    "Worum es in E-Mails geht.",
  "What may be done from there.":
    "Was von dort aus erlaubt ist.",
  "What may be done this way.":
    "Was auf diese Weise erlaubt ist.",
  "What may be done.":
    "Was erlaubt ist.",
  "What may not pass the gateway, and when.":
    "Was den Router nicht passieren darf, und wann.",
  "What may pass between the networks.":
    "Was zwischen den Netzen passieren darf.",
  "What opens what.":
    "Was was öffnet.",
  "What packets are marked with.":
    "Womit Pakete markiert werden.",
  "What runs now.":
    "Was jetzt läuft.",
  "What stands beside the name.":
    "Was neben dem Namen steht.",
  "What the class gets.":
    "Was die Klasse bekommt.",
  "What the device can do.":
    "Was das Gerät kann.",
  "What the device does.":
    "Was das Gerät tut.",
  "What the device says.":
    "Was das Gerät sagt.",
  "What the display on the gateway shows.":
    "Was die Anzeige am Router zeigt.",
  "What the firewall saw.":
    "Was die Firewall sah.",
  "What the gateway calls it.":
    "Wie der Router es nennt.",
  "What the gateway is called in the network.":
    "Wie der Router im Netz heißt.",
  "What the gateway is to the network.":
    "Was der Router für das Netz ist.",
  "What the gateway is.":
    "Was der Router ist.",
  "What the gateway speaks.":
    "Was der Router spricht.",
  "What the gateway's programs count.":
    "Was die Programme des Routers zählen.",
  "What the line adds to each packet.":
    "Was die Leitung zu jedem Paket hinzufügt.",
  "What the list means.":
    "Was die Liste bedeutet.",
  "What the lists mean.":
    "Was die Listen bedeuten.",
  "What the overview shows.":
    "Was die Übersicht zeigt.",
  "What the password was made into; empty when none is set and nobody can log in.":
    "Was aus dem Passwort wurde; leer, wenn keines gesetzt ist und niemand sich anmelden kann.",
  "What the provider answered.":
    "Was der Anbieter antwortete.",
  "What the provider asks for.":
    "Was der Anbieter verlangt.",
  "What the provider promised.":
    "Was der Anbieter versprach.",
  "What the rules do.":
    "Was die Regeln tun.",
  "What the user may do.":
    "Was der Benutzer darf.",
  "What there is.":
    "Was da ist.",
  "What this device can be.":
    "Was dieses Gerät sein kann.",
  "What those who connect get.":
    "Was die bekommen, die sich verbinden.",
  "What was done.":
    "Was getan wurde.",
  "What was found.":
    "Was gefunden wurde.",
  "What was heard.":
    "Was zu hören war.",
  "What was installed when.":
    "Was wann installiert wurde.",
  "What was set up.":
    "Was eingerichtet wurde.",
  "What was used.":
    "Was benutzt wurde.",
  "What went out.":
    "Was hinausging.",
  "What went over the network since the last start.":
    "Was seit dem letzten Start durch das Netz ging.",
  "What went through since the last start.":
    "Was seit dem letzten Start durchging.",
  "What went through.":
    "Was durchging.",
  "What you asked for.":
    "Worum Sie gebeten haben.",
  "What you asked.":
    "Was Sie gefragt haben.",
  "What you want to remember.":
    "Was Sie sich merken wollen.",
  "When a message is sent.":
    "Wann eine Nachricht verschickt wird.",
  "When it begins.":
    "Wann es beginnt.",
  "When it ended.":
    "Wann es endete.",
  "When it ends.":
    "Wann es endet.",
  "When it goes away.":
    "Wann sie verschwindet.",
  "When it was installed.":
    "Wann es installiert wurde.",
  "When it was last heard.":
    "Wann es zuletzt gehört wurde.",
  "When it was last used.":
    "Wann es zuletzt benutzt wurde.",
  "When nobody is told.":
    "Wann niemand benachrichtigt wird.",
  "When nothing has come for so long.":
    "Wenn so lange nichts kam.",
  "When nothing was done for so long.":
    "Wenn so lange nichts getan wurde.",
  "When power is saved.":
    "Wann Strom gespart wird.",
  "When the gateway switches itself off.":
    "Wann der Router sich selbst abschaltet.",
  "When the internet may be used.":
    "Wann das Internet benutzt werden darf.",
  "When the last copy was made.":
    "Wann die letzte Kopie gemacht wurde.",
  "When the network is switched off again.":
    "Wann das Netz wieder ausgeschaltet wird.",
  "When the provider was last told.":
    "Wann der Anbieter es zuletzt erfuhr.",
  "When the rule counts.":
    "Wann die Regel gilt.",
  "When the search ended.":
    "Wann die Suche endete.",
  "When they are installed.":
    "Wann sie installiert werden.",
  "Where copies are kept.":
    "Wo Kopien aufgehoben werden.",
  "Where devices reach the gateway.":
    "Wo Geräte den Router erreichen.",
  "Where help is found.":
    "Wo Hilfe zu finden ist.",
  "Where it came from.":
    "Woher es kam.",
  "Where it can be reached from.":
    "Von wo sie erreichbar ist.",
  "Where it comes from.":
    "Woher er kommt.",
  "Where it gives up.":
    "Wo es aufgibt.",
  "Where it goes to.":
    "Wohin er geht.",
  "Where it goes.":
    "Wohin es geht.",
  "Where it is connected.":
    "Wo es verbunden ist.",
  "Where it is plugged in.":
    "Wo er eingesteckt ist.",
  "Where it listens; 0 for not at all.":
    "Wo sie zuhört; 0 für gar nicht.",
  "Where it stands.":
    "Wo sie steht.",
  "Where its files are.":
    "Wo seine Dateien sind.",
  "Where mail goes to.":
    "Wohin E-Mails gehen.",
  "Where mails go.":
    "Wohin die E-Mails gehen.",
  "Where media are looked for.":
    "Wo nach Medien gesucht wird.",
  "Where packets go to first.":
    "Wohin Pakete zuerst gehen.",
  "Where packets leave.":
    "Wo Pakete hinausgehen.",
  "Where routes are told.":
    "Wo Routen mitgeteilt werden.",
  "Where the box is.":
    "Wo der Empfänger ist.",
  "Where the cable or stick is.":
    "Wo Kabel oder Stick sind.",
  "Where the gateway stands.":
    "Wo der Router steht.",
  "Where the packet goes to.":
    "Wohin das Paket geht.",
  "Where the server is reached.":
    "Wo der Server erreichbar ist.",
  "Where the time comes from.":
    "Woher die Zeit kommt.",
  "Whether both ends may send at once.":
    "Ob beide zugleich senden dürfen.",
  "Whether clocks change in summer.":
    "Ob die Uhren im Sommer umgestellt werden.",
  "Whether connections are encrypted.":
    "Ob Verbindungen verschlüsselt werden.",
  "Whether devices must protect the frames that steer the connection.":
    "Ob Geräte die Rahmen schützen müssen, die die Verbindung steuern.",
  "Whether it is in use.":
    "Ob er in Gebrauch ist.",
  "Whether it works now.":
    "Ob sie jetzt arbeitet.",
  "Which addresses are in the same network.":
    "Welche Adressen im selben Netz sind.",
  "Which kind of addresses.":
    "Welche Art von Adressen.",
  "Which networks are meant.":
    "Welche Netze gemeint sind.",
  "Which of the two it is.":
    "Welcher der beiden es ist.",
  "Which of the two places it is in.":
    "An welchem der beiden Plätze sie ist.",
  "Which pages may be seen.":
    "Welche Seiten zu sehen sind.",
  "Which traffic goes first.":
    "Welcher Verkehr zuerst kommt.",
  "Which traffic waits here.":
    "Welcher Verkehr hier wartet.",
  "Which versions are installed.":
    "Welche Versionen installiert werden.",
  "Who did what with files.":
    "Wer was mit Dateien tat.",
  "Who does that is blocked.":
    "Wer das tut, wird gesperrt.",
  "Who gets them.":
    "Wer sie bekommt.",
  "Who helps.":
    "Wer hilft.",
  "Who is asked for an answer.":
    "Wer um Antwort gebeten wird.",
  "Who is asked for names, in this order.":
    "Wer nach Namen gefragt wird, in dieser Reihenfolge.",
  "Who is asked for the time.":
    "Wer nach der Zeit gefragt wird.",
  "Who is on this network now.":
    "Wer jetzt in diesem Netz ist.",
  "Who is told of what happens.":
    "Wer erfährt, was geschieht.",
  "Who it is.":
    "Wer es ist.",
  "Who keeps the name.":
    "Wer den Namen führt.",
  "Who may be in the network at all.":
    "Wer überhaupt im Netz sein darf.",
  "Who may connect.":
    "Wer sich verbinden darf.",
  "Who may connect: any, an address or a network.":
    "Wer sich verbinden darf: any für alle, eine Adresse oder ein Netz.",
  "Who may do what.":
    "Wer was darf.",
  "Who may join, and how data is encrypted.":
    "Wer dazukommen darf, und wie Daten verschlüsselt werden.",
  "Who may use this page.":
    "Wer diese Seite benutzen darf.",
  "Who must encrypt.":
    "Wer verschlüsseln muss.",
  "Who sends the mails.":
    "Wer die E-Mails verschickt.",
  "Whom the network is for.":
    "Für wen das Netz ist.",
  "Whose name is used.":
    "Wessen Name benutzt wird.",
  "Wider is faster, narrower reaches farther.":
    "Breiter ist schneller, schmaler reicht weiter.",
  "Year and month.":
    "Jahr und Monat.",
};
