#include "editors/fmEditor.h"

#include "contesto/bozze.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/elenchi/descrizioni.h"
#include "db/lavoro/codici.h"
#include "editors/icone_generi.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/tasti.h"
#include "platform/lingua/italiano.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace modTarvola;

fmEditor::fmEditor(DescrizioneEditor descrizione, QWidget *sopra)
    : FinestraEditor(descrizione.nome, sopra),
      Text1(descrizione.tabella, descrizione.caselle, this),
      pannello(new PannelloCollegamenti(this)),
      m_descrizione(std::move(descrizione))
{
    setWindowTitle(m_descrizione.didascalia);
    setWindowIcon(iconaDellaTabella(m_descrizione.tabella));
    pannello->descrive = [](const QString &codice) {
        // Chi guarda l'elenco non ha chiesto nulla: un guasto lo dirà il comando che apre il
        // record.
        try {
            return modTarvola::descrizione(connessione(), codice);
        } catch (const ado::Errore &) {
            return QString();
        }
    };
    connect(pannello, &PannelloCollegamenti::nuovo, this,
            [this] { messaggi::protetto(this, [this] { nuovo(); }); });
    connect(pannello, &PannelloCollegamenti::elimina, this,
            [this] { messaggi::protetto(this, [this] { elimina(); }); });
    connect(pannello, &PannelloCollegamenti::apri, this,
            [this] { messaggi::protetto(this, [this] { apri(); }); });
    connect(pannello, &PannelloCollegamenti::aggiorna, this, [this] {
        messaggi::protetto(this, [this] {
            if (!codice().isEmpty())
                CaricaCollegamenti();
        });
    });
    // Più tardi, quando chi ha scritto ha finito: nulla che accada qui deve sembrargli un guasto.
    connect(&annunci(), &Annunci::avvenuto, this, &fmEditor::rinfresca, Qt::QueuedConnection);
}

// Ciò che si è scritto da un'altra finestra, o da un altro luogo del programma.
void fmEditor::rinfresca(const Annuncio &annuncio)
{
    if (isVisible() && !codice().isEmpty() && stessoFile(annuncio.archivio, proprieta.Percorso))
        messaggi::protetto(this, [this] { CaricaCollegamenti(); });
}

void fmEditor::costruisce()
{
    auto *colonna = new QVBoxLayout(this);
    completaFinestra(colonna);
    colonna->addWidget(pannello, 1);
    auto *riga = new QHBoxLayout;
    Command1 = new QPushButton(
        salvaChiudendo() ? QStringLiteral("Salva") : QStringLiteral("Chiudi"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command1->setAutoDefault(false);
    if (salvaChiudendo())
        tasti::assegna(this, QKeySequence::Save, Command1);
    connect(Command1, &QPushButton::clicked, this,
            [this] { messaggi::protetto(this, [this] { Command1_Click(); }); });
    riga->addStretch();
    riga->addWidget(Command1);
    colonna->addLayout(riga);
}

void fmEditor::completaFinestra(QVBoxLayout *colonna)
{
    if (Text1.tutte().empty())
        return;
    auto *cornice = new QGroupBox(QStringLiteral("Dettagli"), this);
    Text1.disponi(new QGridLayout(cornice), cornice);
    colonna->addWidget(cornice);
    for (Casella *casella : Text1.tutte()) {
        // La casella si controlla quando il fuoco è già arrivato altrove, non mentre passa.
        if (casella->siControllaLasciandola())
            connect(
                casella, &Casella::lasciata, this, [this, casella] { controllaCasella(*casella); },
                Qt::QueuedConnection);
    }
}

void fmEditor::aggiungeEtichetta(QVBoxLayout *colonna, const QString &didascalia)
{
    auto *riga = new QHBoxLayout;
    riga->addWidget(new QLabel(didascalia, this));
    m_etichetta = new QLabel(this);
    m_etichetta->setObjectName(QStringLiteral("Label2"));
    m_etichetta->setTextFormat(Qt::PlainText);
    QFont grassetto = m_etichetta->font();
    grassetto.setBold(true);
    m_etichetta->setFont(grassetto);
    riga->addWidget(m_etichetta, 1);
    colonna->addLayout(riga);
    mostraEtichetta();
}

void fmEditor::mostraEtichetta()
{
    m_etichetta->setText(Label2.Caption);
}

void fmEditor::Form_Load()
{
    costruisce();
    adoDettagli.Open(dettagli(m_descrizione.tabella, codice()), connessione(), proprieta.TipoLock);
    if (codice().isEmpty())
        adoDettagli.AddNew();
    else if (adoDettagli.Bof())
        throw ado::Errore(ado::Causa::Altro,
                          QStringLiteral("il record %1 non esiste più").arg(codice()));
    Text1.mostra(adoDettagli);
    Text1.setReadOnly(solaLettura());
    caricato();
    if (!codice().isEmpty())
        CaricaCollegamenti();
    else
        pannello->abilita(solaLettura());
    ado::Recordset adoInseribili;
    adoInseribili.Open(generiInseribili(categoria(), contesto().ColonnaLingua), connessione(),
                       proprieta.TipoLock);
    for (; !adoInseribili.Eof(); adoInseribili.MoveNext()) {
        const int genere = adoInseribili.Campo(0).toInt();
        // Il trascrittore nasce dall'accesso, non da un collegamento.
        if (genere != Trascrittore && siOffre(genere))
            pannello->offre(
                {u'K' + QString::number(genere), adoInseribili.Campo(2).toString(), genere});
    }
    abbozza();
}

void fmEditor::CaricaCollegamenti()
{
    const auto scelto = pannello->collegamentoScelto();
    pannello->svuota();
    for (const Legami modo : m_descrizione.legami) {
        ado::Recordset adoInseriti;
        adoInseriti.Open(collegamenti(modo, codice(), contesto().ColonnaLingua), connessione(),
                         proprieta.TipoLock);
        for (; !adoInseriti.Eof(); adoInseriti.MoveNext())
            pannello->aggiunge({adoInseriti.Campo(1).toString(), adoInseriti.Campo(0).toString(),
                                adoInseriti.Campo(2).toInt()});
    }
    pannello->sceglie(scelto ? scelto->Key : QString());
    dopoCollegamenti();
    pannello->abilita(solaLettura());
}

void fmEditor::Command1_Click()
{
    if (!solaLettura() && salvaChiudendo()) {
        if (casellaRifiutata())
            return;
        if (!SalvaDettagli() && restaAperta()) {
            contesto().SalvataggioRifiutato = false;
            return;
        }
    }
    accept();
}

bool fmEditor::SalvaDettagli()
{
    const ado::Recordset prima = adoDettagli;
    contesto().SalvataggioRifiutato = false;
    QString motivo;
    try {
        Text1.scrivi(adoDettagli);
        if (adoDettagli.Testo(QStringLiteral("Codice")).isEmpty())
            completaNuovo();
        completa();
        motivo = controlla();
        if (motivo.isEmpty())
            motivo = scrive();
    } catch (...) {
        adoDettagli = prima;
        throw;
    }
    if (!motivo.isEmpty()) {
        contesto().SalvataggioRifiutato = true;
        adoDettagli = prima;
        m_nelMessaggio = true;
        messaggi::avvisa(this, motivo);
        m_nelMessaggio = false;
        return false;
    }
    codice() = adoDettagli.Testo(QStringLiteral("Codice"));
    Text1.mostra(adoDettagli);
    if (m_sorgente != nullptr)
        m_sorgente->registrata();
    salvato();
    return true;
}

// Rende il rifiuto; vuoto se il record è registrato.
QString fmEditor::scrive()
{
    Lavoro lavoro(connessione(), {}, proprieta.ConOperatore);
    const Scritto scritto = registra(lavoro);
    if (!scritto.rifiuto.isEmpty())
        return scritto.rifiuto;
    if (insieme)
        insieme(lavoro, scritto.codice);
    // Riletto prima di confermare: un record registrato non deve mai sembrare rifiutato.
    adoDettagli.Open(dettagli(m_descrizione.tabella, scritto.codice), connessione(),
                     proprieta.TipoLock);
    lavoro.chiama(QStringLiteral("Salvato ") + nomeDelRecord());
    lavoro.conferma();
    return {};
}

Scritto fmEditor::registra(Lavoro &lavoro)
{
    return lavoro.scrive({m_descrizione.tabella, adoDettagli.Testo(QStringLiteral("Codice")),
                          adoDettagli.Cambiati()});
}

// "Pietro Rossi", o la didascalia col codice per ciò che non ha un nome.
QString fmEditor::nomeDelRecord() const
{
    QStringList parti;
    for (const QString &campo :
         {QStringLiteral("Nome"), QStringLiteral("Cognome"), QStringLiteral("Titolo")}) {
        const QString testo = adoDettagli.Ha(campo) ? adoDettagli.Testo(campo) : QString();
        if (!testo.isEmpty())
            parti.append(testo);
    }
    if (parti.isEmpty())
        parti = {windowTitle(), adoDettagli.Testo(QStringLiteral("Codice"))};
    return parti.join(u' ');
}

void fmEditor::controllaCasella(Casella &casella)
{
    if (!isVisible() || m_nelMessaggio || solaLettura())
        return;
    const QString messaggio = casella.rifiuto();
    if (!messaggio.isEmpty())
        rifiuta(casella, messaggio);
}

// Un bottone premuto in fretta arriva prima del controllo della casella appena lasciata.
bool fmEditor::casellaInSospeso()
{
    return !solaLettura() && casellaRifiutata();
}

bool fmEditor::casellaRifiutata()
{
    for (Casella *casella : Text1.tutte()) {
        const QString messaggio = casella->rifiuto();
        if (!messaggio.isEmpty()) {
            rifiuta(*casella, messaggio);
            return true;
        }
    }
    return false;
}

void fmEditor::rifiuta(Casella &casella, const QString &messaggio)
{
    m_nelMessaggio = true;
    messaggi::avvisa(this, messaggio);
    m_nelMessaggio = false;
    casella.riprende();
}

void fmEditor::keyPressEvent(QKeyEvent *evento)
{
    // Esc non chiude: una pressione per sbaglio non butti via ciò che si è scritto.
    if (evento->key() == Qt::Key_Escape)
        evento->accept();
    else
        FinestraEditor::keyPressEvent(evento);
}
