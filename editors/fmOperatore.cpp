#include "editors/fmOperatore.h"

#include "db/archivio/connessioni.h"
#include "db/lavoro/codici.h"
#include "db/lavoro/operatori.h"
#include "platform/finestre/messaggi.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QVBoxLayout>

using namespace modTarvola;

namespace
{

constexpr int nome = 0;
constexpr int password = 2;
constexpr int conferma = 3;

const QString cornicePassword = QStringLiteral("Password");

// La conferma non si registra, ma è fatta come la password.
DescrizioneCampo daConfermare()
{
    DescrizioneCampo campo = campoDi(u"Operatori", u"Password");
    campo.etichetta = QStringLiteral("Conferma");
    return campo;
}

DescrizioneEditor descrizione()
{
    return {
        QStringLiteral("fmOperatore"),
        QStringLiteral("Trascrittore"),
        QStringLiteral("Operatori"),
        &ProprietaFinestra::OperatoreLocale,
        {
            {nome, QStringLiteral("Nome")},
            {1, QStringLiteral("Cognome")},
            {password, QStringLiteral("Password"), 0, 0, cornicePassword},
            {conferma, QString(), 1, 0, cornicePassword, daConfermare()},
        },
        {Legami::TestiEFile, Legami::Indirizzi, Legami::Recapiti, Legami::Operatori},
        {Nota, TestoRiportato, FileAllegato, Contatto, Indirizzo, Recapito},
    };
}

} // namespace

fmOperatore::fmOperatore(QWidget *sopra) : fmEditor(descrizione(), sopra) {}

void fmOperatore::Form_Load()
{
    switch (proprieta.TipoOperatore) {
    case NuovoTrascrittore:
        break;
    case Contatto:
        setWindowTitle(QStringLiteral("Contatto"));
        // Un contatto che non c'è più si crea da capo.
        if (!esiste(connessione(), codice()))
            codice().clear();
        break;
    case PropriDati:
    case Trascrittore:
        if (codice().isEmpty())
            throw ado::Errore(ado::Causa::Altro,
                              QStringLiteral("manca il codice del trascrittore"));
        break;
    default:
        throw ado::Errore(
            ado::Causa::Altro,
            QStringLiteral("%1 non è un genere di operatore").arg(proprieta.TipoOperatore));
    }
    fmEditor::Form_Load();
}

void fmOperatore::completaFinestra(QVBoxLayout *colonna)
{
    fmEditor::completaFinestra(colonna);
    Frame3 = new QGroupBox(cornicePassword, this);
    Frame3->setObjectName(QStringLiteral("Frame3"));
    Text1.disponi(new QGridLayout(Frame3), Frame3, cornicePassword);
    colonna->addWidget(Frame3);
}

void fmOperatore::caricato()
{
    m_passwordDaControllare =
        proprieta.TipoOperatore == NuovoTrascrittore || proprieta.TipoOperatore == PropriDati;
    Frame3->setVisible(m_passwordDaControllare);
    connect(Text1[password], &Casella::cambiata, this, [this] { m_passwordDaControllare = true; });
    if (proprieta.TipoOperatore == Trascrittore)
        messaggi::avvisa(parentWidget(), QStringLiteral("I dati del trascrittore non\n"
                                                        "possono essere modificati"));
}

// La conferma della password la conosce solo la finestra; senza nome se ne parla dopo.
QString fmOperatore::controlla() const
{
    return m_passwordDaControllare && !Text1.vuote({nome})
               ? rifiutoPassword(Text1[password]->testo(), Text1[conferma]->testo())
               : QString();
}

void fmOperatore::completa()
{
    adoDettagli.Assegna(QStringLiteral("Tipo"), contatto() ? Contatto : Trascrittore);
}

// Il contatto è legato al record da cui è nato; degli altri si annota chi li ha registrati.
Scritto fmOperatore::registra(Lavoro &lavoro)
{
    Scritto scritto = fmEditor::registra(lavoro);
    if (scritto.rifiuto.isEmpty() && contatto())
        lavoro.collega(scritto.codice, proprieta.VoceLocale);
    return scritto;
}

void fmOperatore::salvato()
{
    if (m_passwordDaControllare)
        messaggi::avvisa(this, QStringLiteral("I dati sono stati registrati\n"
                                              "Annotare nome e password"));
}
