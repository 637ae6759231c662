#include "townhost/hall/news_items.h"

namespace town {

namespace {

using Subject = Scene::Subject;

constexpr NewsItem kItems[] = {
    {"Il mercato di {sab} si sposta in Piazza Garibaldi",
     "Per i lavori alla pavimentazione di Piazza del Duomo i banchi saranno sistemati in Piazza "
     "Garibaldi e lungo Via Cavour, con i consueti orari.",
     "mercato-piazza-garibaldi.png", Subject::Market, false,
     "<p>Il mercato settimanale di <b>{sab}</b> si terrà in <b>Piazza Garibaldi</b> e nel primo "
     "tratto di Via Cavour, dalle 7.30 alle 13.00.</p><p>Lo spostamento è dovuto alla posa della "
     "nuova pavimentazione in Piazza del Duomo e vale per due settimane. Il parcheggio di Viale "
     "della Stazione resta gratuito per tutta la mattina.</p><p>Informazioni: Ufficio Commercio, "
     "<a href=\"tel:0370550120\">0370 550120</a>.</p>"},
    {"Nuovi orari degli uffici comunali dal prossimo lunedì",
     "Anagrafe e Tributi aprono anche il martedì pomeriggio. L'appuntamento si prende al telefono "
     "o allo sportello.",
     "orari-uffici.png", Subject::Square, false,
     "<p>Da <b>{lun}</b> gli uffici del municipio seguono il nuovo orario:</p><ul><li>Anagrafe: da "
     "lunedì a sabato, 8.30-12.30; martedì anche 15.00-17.30</li><li>Tributi: lunedì, martedì e "
     "giovedì, 8.30-12.30; martedì anche 15.00-17.30</li><li>Ufficio tecnico: mercoledì e venerdì, "
     "9.00-12.30, su appuntamento</li></ul><p>Per la carta d'identità elettronica occorre sempre "
     "l'appuntamento.</p>"},
    {"Chiusura di Via Mazzini per lavori alla rete idrica",
     "Da {lun} la via sarà chiusa al traffico tra Via Dante e Via Manzoni, per circa dieci giorni. "
     "Passaggio garantito a piedi e ai residenti.",
     "lavori-via-mazzini.png", Subject::RoadWorks, false,
     "<p>Da <b>{lun}</b> fino alla fine dei lavori, previsti entro <b>{+14}</b>, Via Mazzini sarà "
     "chiusa nel tratto tra Via Dante e Via Manzoni per la sostituzione della condotta "
     "dell'acqua.</p>"
     "<p>La linea 2 dell'autobus passerà da Viale dei Platani; la fermata «Mazzini» è sospesa. "
     "Mercoledì mattina l'acqua potrà mancare dalle 9.00 alle 12.00 nelle case ai numeri dispari."
     "</p>"},
    {"In biblioteca si legge ad alta voce",
     "Ogni giovedì alle 17.00 letture per bambini da tre a sette anni, a cura dei lettori "
     "volontari. Ingresso libero.",
     "letture-biblioteca.png", Subject::Books, false,
     "<p>Tornano le letture ad alta voce della biblioteca: il primo incontro è <b>{gio}</b> alle "
     "17.00 nella sala ragazzi, con storie di animali che parlano.</p><p>I posti sono venticinque; "
     "non serve prenotare. I genitori possono restare, e anche i nonni.</p>"},
    {"Piano neve: mezzi e sale sono pronti",
     "Undici spazzaneve e ottanta tonnellate di sale per le strade della città e delle frazioni. "
     "Ecco che cosa è chiesto a chi abita al piano terra.",
     "piano-neve.png", Subject::Snow, false,
     "<p>Il piano neve è in vigore da metà novembre a metà marzo. In caso di nevicata si puliscono "
     "prima le strade verso l'ospedale, le scuole e la stazione, poi le vie dei quartieri.</p><p>A "
     "chi abita al piano terra è chiesto di tenere libero dal ghiaccio il marciapiede davanti a "
     "casa. Il sale si ritira gratuitamente alla piattaforma ecologica, un sacco a famiglia.</p>"},
    {"Iscrizioni alla mensa scolastica entro {+20}",
     "Le famiglie che hanno cambiato indirizzo o dieta possono aggiornare i dati all'Ufficio "
     "Scuola oppure per posta elettronica.",
     "mensa-scuola.png", Subject::School, false,
     "<p>Le iscrizioni e le variazioni per la mensa del secondo quadrimestre si ricevono fino a "
     "<b>{+20}</b>.</p><p>Per le diete speciali occorre il certificato del medico; per quelle "
     "scelte dalla famiglia basta una dichiarazione. Il modulo si invia a <a "
     "href=\"mailto:scuola@comune.varlo.example\">scuola@comune.varlo.example</a>.</p>"},
    {"Consiglio comunale convocato per {gio2}",
     "All'ordine del giorno il bilancio di previsione e il regolamento del verde. La seduta è "
     "pubblica, dalle 20.30 nella sala consiliare.",
     "consiglio-comunale.png", Subject::Square, true,
     "<p>Il Consiglio comunale è convocato per <b>{gio2}</b> alle 20.30, in seduta pubblica.</p>"
     "<ol><li>Comunicazioni della sindaca</li><li>Bilancio di previsione</li><li>Regolamento del "
     "verde pubblico e privato</li><li>Interrogazioni sulla viabilità di Ponte Nuovo</li></ol>"},
    {"Riapre la ciclabile del Parco del Fiume",
     "Conclusi i lavori sull'argine: da oggi si torna in bicicletta fino a Ponte Nuovo senza "
     "passare dalla provinciale.",
     "ciclabile-parco.png", Subject::Bicycle, false,
     "<p>Sono terminati i lavori sull'argine e la pista ciclabile del Parco del Fiume è di nuovo "
     "aperta per intero: quattro chilometri e mezzo, da Via dei Mulini a Ponte Nuovo.</p><p>Lungo "
     "il "
     "percorso ci sono ora sei panchine, due fontanelle e una colonnina con gli attrezzi per le "
     "piccole riparazioni.</p>"},
    {"Raccolta rifiuti: cosa cambia nei giorni di festa",
     "Nelle settimane con una festività infrasettimanale il ritiro slitta al giorno dopo. I sacchi "
     "si espongono dalle 20.00 alle 6.00.",
     "raccolta-feste.png", Subject::Bins, false,
     "<p>Quando il giorno di ritiro cade in una festività, i mezzi passano <b>il giorno dopo</b>, "
     "con gli stessi orari. La piattaforma ecologica resta chiusa nei festivi.</p><p>Il calendario "
     "della propria zona si consulta nella sezione «Raccolta rifiuti» di questa app.</p>"},
    {"Concerto del Corpo bandistico al Teatro Sociale",
     "{sab2} alle 21.00 la banda cittadina festeggia i centoquarant'anni con le musiche da film "
     "più "
     "amate. Ingresso a offerta libera.",
     "concerto-banda.png", Subject::Stage, true,
     "<p>Il Corpo bandistico cittadino compie centoquarant'anni e li festeggia al Teatro Sociale "
     "<b>{sab2}</b>, alle 21.00.</p><p>In programma le musiche da film più amate, con la "
     "partecipazione del coro delle scuole. L'incasso va alla Protezione civile.</p>"},
    {"Duecento nuovi alberi tra Via delle Rose e Via dei Gelsi",
     "Aceri, tigli e carpini al posto delle piante abbattute dal temporale di luglio. Le scuole "
     "adotteranno una pianta per classe.",
     "nuovi-alberi.png", Subject::Park, false,
     "<p>È cominciata la messa a dimora di duecento alberi nel quartiere dei Gelsi. Le essenze "
     "sono "
     "state scelte con l'università: aceri campestri, tigli e carpini, che chiedono poca acqua.</p>"
     "<p>Ogni classe della scuola primaria adotterà una pianta e ne annoterà la crescita.</p>"},
    {"Bando per i contributi alle associazioni sportive",
     "Quarantamila euro per le attività dei più giovani. Le domande si presentano entro {+30}, "
     "soltanto con lo SPID o la carta d'identità elettronica.",
     "bando-sport.png", Subject::Pitch, false,
     "<p>Il bando mette a disposizione <b>quarantamila euro</b> per le associazioni che fanno fare "
     "sport a ragazze e ragazzi sotto i sedici anni.</p><p>Le domande si presentano allo sportello "
     "telematico entro <b>{+30}</b>. Il testo è nell'Archivio degli atti, cercando «associazioni "
     "sportive».</p>"},
    {"Il livello del fiume è tornato nella norma",
     "Cessato lo stato di attenzione della Protezione civile. Le strade arginali sono di nuovo "
     "aperte; resta chiuso il sottopasso di Via del Cimitero.",
     "livello-fiume.png", Subject::River, false,
     "<p>Il livello del fiume è sceso sotto la soglia di attenzione e il Centro operativo comunale "
     "è stato chiuso. Le strade arginali sono percorribili.</p><p>Il sottopasso di Via del "
     "Cimitero "
     "sarà riaperto dopo la pulizia, prevista per <b>{+2}</b>. Un grazie ai volontari, che hanno "
     "vegliato due notti.</p>"},
    {"Servizio civile: quattro posti in comune",
     "Biblioteca, ufficio giovani e assistenza agli anziani: dodici mesi, venticinque ore la "
     "settimana, dai diciotto ai ventotto anni.",
     "servizio-civile.png", Subject::Square, false,
     "<p>Sono aperti i posti per il servizio civile universale: due in biblioteca, uno all'ufficio "
     "giovani, uno ai servizi per gli anziani. L'assegno è quello stabilito a livello "
     "nazionale.</p>"
     "<p>Le candidature si inviano entro <b>{+25}</b>. Un incontro informativo si tiene {mar} alle "
     "18.00 in biblioteca.</p>"},
    {"Cinema all'ora del tè",
     "Quattro pomeriggi di film al Teatro Sociale per chi ha più di sessantacinque anni, con il tè "
     "offerto dall'Università del tempo libero.",
     "cinema-te.png", Subject::Stage, true,
     "<p>Il mercoledì alle 15.30, a partire da <b>{mer}</b>, il Teatro Sociale proietta quattro "
     "commedie italiane. L'ingresso costa due euro; per chi ne ha bisogno c'è il pulmino "
     "dell'AUSER, da prenotare il giorno prima.</p>"},
    {"Un defibrillatore in ogni frazione",
     "Anche Borgo San Giorgio e Cascine Alte hanno il loro. A dicembre un corso gratuito insegna a "
     "usarlo.",
     "defibrillatori.png", Subject::Square, false,
     "<p>Con le colonnine di Borgo San Giorgio e di Cascine Alte i defibrillatori pubblici sono "
     "ora nove. Tutti sono segnati nella sezione «Mappe» dell'app.</p><p>Il corso di primo "
     "soccorso "
     "dura cinque ore, è gratuito e si tiene {sab2} nella sede dell'AVIS.</p>"},
    {"La scuola di Via Matteotti avrà una nuova palestra",
     "Approvato il progetto da un milione e duecentomila euro. I lavori cominciano in primavera e "
     "durano quattordici mesi.",
     "palestra-scuola.png", Subject::School, false,
     "<p>La Giunta ha approvato il progetto esecutivo della palestra di Via Matteotti: campo "
     "regolamentare di pallavolo, spogliatoi, una tribuna da centoventi posti e il tetto coperto "
     "di "
     "pannelli solari.</p><p>Durante i lavori le lezioni si terranno al Centro sportivo, raggiunto "
     "con uno scuolabus.</p>"},
    {"Parcheggi blu: le tariffe restano quelle di quest'anno",
     "Un euro l'ora, i primi venti minuti gratis. Gli abbonamenti dei residenti si rinnovano dal "
     "telefono.",
     "parcheggi-blu.png", Subject::Bicycle, false,
     "<p>Le tariffe della sosta a pagamento restano invariate: un euro l'ora dalle 8.30 alle 19.00 "
     "nei giorni feriali, con i primi venti minuti gratuiti.</p><p>L'abbonamento dei residenti si "
     "rinnova entro <b>{+40}</b>.</p>"},
    {"Censimento: gli incaricati passano nelle case estratte",
     "Sono muniti di tesserino del Comune e non chiedono mai denaro. In caso di dubbio si chiama "
     "la "
     "Polizia locale.",
     "censimento.png", Subject::Square, false,
     "<p>Fino a <b>{+28}</b> i rilevatori del censimento permanente visitano le famiglie estratte. "
     "Portano un tesserino con fotografia e <b>non chiedono mai denaro</b> né i dati della "
     "banca.</p>"
     "<p>Per ogni verifica: Polizia locale, <a href=\"tel:0370550113\">0370 550113</a>.</p>"},
    {"Luci in città: il calendario di dicembre",
     "Accensione dell'albero, mercatini, presepi di quartiere e la corsa dei Babbi Natale: tutti "
     "gli appuntamenti delle feste.",
     "luci-in-citta.png", Subject::Snow, true,
     "<p>Da fine novembre all'Epifania il centro si accende: le luminarie, quest'anno tutte a "
     "basso "
     "consumo, vanno dalle 16.30 alle 23.00.</p><p>Il programma completo si ritira all'URP e si "
     "trova nella sezione degli eventi di questa app. Il trenino parte ogni sabato e domenica da "
     "Piazza Garibaldi.</p>"},
};
static_assert(std::size(kItems) == 20);

}  // namespace

std::span<const NewsItem> newsItems() { return kItems; }

}  // namespace town
