#include "demo/pagine.h"

#include "db/archivio/connessioni.h"
#include "db/lavoro/lavoro.h"
#include "demo/caselle.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextStream>

using namespace Qt::StringLiterals;
using namespace esempi;

namespace
{

QString mostrato(const QWidget *casella)
{
    if (const auto *riga = qobject_cast<const QLineEdit *>(casella))
        return riga->text();
    const auto *testo = qobject_cast<const QPlainTextEdit *>(casella);
    return testo == nullptr ? QString() : testo->toPlainText();
}

// La casella con la tastiera; lancia Guasto se la tastiera è altrove.
QWidget *qui()
{
    QWidget *casella = QApplication::focusWidget();
    if (casella == nullptr || casella->accessibleName().isEmpty())
        throw Guasto(u"the keyboard is in no box of the page"_s);
    return casella;
}

} // namespace

Pagine::Pagine(Mani &mani, const std::vector<Archivio> &archivi, const QString &cartella)
    : Scena(mani, cartella + u"/pagine.tvd"_s), m_archivi(archivi)
{
}

Passo Pagine::recita()
{
    co_await creaFile();
    co_await siPresenta();
    preparaRegistri();
    for (const Archivio &archivio : m_archivi) {
        for (const Registro &registro : archivio.registri) {
            QElapsedTimer orologio;
            orologio.start();
            co_await apreRegistro(archivio.nome, registro.titolo);
            for (const Atto &atto : registro.atti)
                co_await scriveAtto(registro, atto);
            co_await m_mani.chiudiElenco();
            co_await m_mani.appareElenco(u"Registri"_s);
            co_await m_mani.chiudiElenco();
            QTextStream(stdout) << u"%1 on the page: acts %2; %3 s\n"_s.arg(registro.titolo)
                                       .arg(registro.atti.size())
                                       .arg(static_cast<double>(orologio.elapsed()) / 1000, 0, 'f',
                                            1);
        }
    }
    co_await m_mani.appareElenco(u"Archivi"_s);
    co_await m_mani.chiudiElenco();
}

// Archivi e registri non sono atti: ci sono già, come li scriverebbero le loro finestre.
void Pagine::preparaRegistri() const
{
    modTarvola::Lavoro lavoro(modTarvola::connessione(), {}, u"O1"_s);
    ado::Connection &file = lavoro.connessione();
    for (const Archivio &archivio : m_archivi) {
        const QString suo = lavoro
                                .scrive({u"Archivi"_s,
                                         {},
                                         {{u"Nome"_s, archivio.nome},
                                          {u"Abbreviazione"_s, archivio.abbreviato},
                                          {u"Gruppo"_s, archivio.gruppo}}})
                                .codice;
        for (const Registro &registro : archivio.registri)
            lavoro.scrive(
                {u"Registri"_s,
                 {},
                 {{u"Archivio"_s, suo},
                  {u"Titolo"_s, registro.titolo},
                  {u"Tipo"_s,
                   file.valore(
                       {u"SELECT Codice FROM Traduzioni WHERE L1 = ?"_s, {registro.tipo}, {}})},
                  {u"DataIniziale"_s, registro.dataIniziale},
                  {u"DataFinale"_s, registro.dataFinale},
                  {u"Supporto"_s, registro.supporto}}});
    }
    lavoro.conferma();
}

Passo Pagine::apreRegistro(QString archivio, QString registro)
{
    co_await m_mani.appareElenco(u"Archivi"_s);
    co_await m_mani.vaiAllaRiga(archivio);
    co_await m_mani.cliccaBarra(u"Seleziona"_s);
    co_await m_mani.appareElenco(u"Registri"_s);
    co_await m_mani.vaiAllaRiga(registro);
    co_await m_mani.premi(Qt::Key_F4);
    co_await m_mani.appareElenco(u"Scheda"_s);
}

// Dalla prima casella all'ultima, nell'ordine in cui si leggono; poi si salva e si va all'atto
// seguente. Ciò che la pagina propone resta se è giusto.
Passo Pagine::scriveAtto(const Registro &registro, const Atto &atto)
{
    Caselle mancano = caselleDi(atto);
    for (const QWidget *prima = nullptr; prima != qui();) {
        prima = qui();
        co_await m_mani.premi(Qt::Key_Up);
    }
    for (bool ultima = false; !ultima;) {
        QWidget *casella = qui();
        const QString nome = casella->accessibleName();
        ultima = nome == (atto.traduzione.isEmpty() ? u"Testo"_s : u"Nota"_s);
        QString testo = mancano.take(nome);
        if (nome.endsWith(u": Data"_s))
            testo = scritturaData(testo, m_date++);
        co_await scriveCasella(casella, testo);
        if (!ultima)
            co_await lasciaCasella(casella);
    }
    if (!mancano.isEmpty())
        throw Guasto(u"the page has no box for "_s + mancano.keys().join(u", "_s));
    co_await m_mani.fotografa(u"scheda-"_s + registro.tipo.toLower());
    co_await m_mani.premi(Qt::Key_Return, Qt::ControlModifier);
    if (m_mani.davanti()->objectName() != u"MDITras"_s)
        throw Guasto(u"the page of "_s + atto.titolo + u" is not saved"_s);
}

Passo Pagine::scriveCasella(QWidget *casella, QString testo)
{
    if (mostrato(casella) == testo || qobject_cast<QComboBox *>(casella) != nullptr)
        co_return;
    co_await m_mani.premi(Qt::Key_A, Qt::ControlModifier);
    if (testo.isEmpty())
        co_await m_mani.premi(Qt::Key_Delete);
    else
        co_await m_mani.batti(testo);
    if (mostrato(casella) != testo)
        throw Guasto(u"%1 shows \"%2\" after typing \"%3\""_s.arg(casella->accessibleName(),
                                                                  mostrato(casella), testo));
}

// Con le proposte davanti la freccia sceglierebbe fra loro.
Passo Pagine::lasciaCasella(QWidget *casella)
{
    const QWidget *proposte = casella->window()->findChild<QWidget *>(u"Completamento"_s);
    if (proposte != nullptr && proposte->isVisible())
        co_await m_mani.premi(Qt::Key_Escape);
    const bool riga = qobject_cast<QLineEdit *>(casella) != nullptr;
    co_await m_mani.premi(riga ? Qt::Key_Down : Qt::Key_Tab);
    if (qui() == casella)
        throw Guasto(u"the keyboard cannot leave "_s + casella->accessibleName());
}
