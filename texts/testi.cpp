#include "texts/testi.h"

#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "db/lavoro/collegamenti.h"
#include "db/lavoro/lavoro.h"
#include "db/schema/generi.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/testo_semplice.h"
#include "platform/motore/recordset.h"
#include "texts/fmTxtL.h"
#include "texts/seguito_testo.h"

#include <functional>

namespace modTarvola
{

namespace
{

// Un testo con il suo titolo, e che cosa ne è cambiato nella finestra.
struct TestoLungo {
    QString testo;
    QString nome;
    bool testoModificato = false;
    bool nomeModificato = false;
    bool vuoto() const { return testo.trimmed().isEmpty(); }
};

// Mostra il testo nella sua finestra e rende ciò che ne esce. Fra loro passa nei valori condivisi,
// che prima e dopo sono vuoti, qualunque cosa accada in mezzo.
class Scambio
{
public:
    Scambio() { svuota(); }
    ~Scambio() { svuota(); }
    Scambio(const Scambio &) = delete;
    Scambio &operator=(const Scambio &) = delete;

    static void mostra(TestoLungo &testo, fmTxtL &finestra, const QString &proprietario)
    {
        contesto().TestoCampoLungo = testo.testo;
        contesto().NomeCampoLungo = testo.nome;
        finestra.Form_Load(proprietario);
        finestra.exec();
        testo = {contesto().TestoCampoLungo, contesto().NomeCampoLungo,
                 testo.testoModificato || contesto().TestoModificato,
                 testo.nomeModificato || contesto().NomeModificato};
    }

private:
    static void svuota()
    {
        contesto().TestoCampoLungo.clear();
        contesto().NomeCampoLungo.clear();
        contesto().TestoModificato = false;
        contesto().NomeModificato = false;
    }
};

// Dove e come si mostra un testo.
struct Finestra {
    QWidget *sopra;
    int blocco;
    QString didascalia;
    QString proprietario;
    int genere;
    QJsonObject come; // ciò che una bozza deve sapere per riaprirla
};

// Mostra la finestra; se ciò che ne esce non si può scrivere lo dice e la ripropone, perché una
// pagina trascritta non vada perduta. Falso se il testo torna vuoto.
bool compie(const Finestra &dove, TestoLungo testo,
            const std::function<void(const TestoLungo &)> &scrive)
{
    const TestoLungo nelFile = testo;
    for (;;) {
        const Scambio scambio;
        fmTxtL finestra(dove.sopra);
        finestra.TipoLock = dove.blocco;
        finestra.setWindowTitle(testo_semplice::didascalia(dove.didascalia));
        finestra.origine = {dove.come, nelFile.testo, nelFile.nome};
        if (dove.genere == TestoRiportato && dove.blocco != ado::adLockReadOnly)
            continuaDalRegistro(finestra, connessione(), dove.proprietario);
        Scambio::mostra(testo, finestra, dove.proprietario);
        if (testo.vuoto())
            return false;
        try {
            scrive(testo);
            return true;
        } catch (const ado::Errore &errore) {
            if (!messaggi::avverte(dove.sopra,
                                   QStringLiteral("Operazione non riuscita:\n") + errore.testo()))
                return true;
        }
    }
}

void registra(const QString &passo, const QString &codice, const QVariantMap &valori)
{
    Lavoro lavoro(connessione(), passo);
    lavoro.scrive({QStringLiteral("Binari"), codice, valori});
    lavoro.conferma();
}

} // namespace

void NuovoTesto(QWidget *sopra, const QString &proprietario, int genere, const QString &didascalia)
{
    compie({sopra, ado::adLockOptimistic, didascalia, proprietario, genere,
            QJsonObject{{QStringLiteral("proprietario"), proprietario},
                        {QStringLiteral("genere"), genere},
                        {QStringLiteral("didascalia"), didascalia}}},
           {}, [&](const TestoLungo &testo) {
               registra(QStringLiteral("Aggiunta di ") + didascalia, {},
                        {{QStringLiteral("Tipo"), genere},
                         {QStringLiteral("IdProprietario"), proprietario},
                         {QStringLiteral("Nome"), testo.nome},
                         {QStringLiteral("Campolungo"), testo.testo}});
           });
}

bool ApriTesto(QWidget *sopra, const QString &codice, int blocco, const QString &didascalia)
{
    ado::Recordset adoCampiLunghi;
    adoCampiLunghi.Open(testoLungo(codice), connessione(), blocco);
    const TestoLungo presente{adoCampiLunghi.Testo(QStringLiteral("Campolungo")),
                              adoCampiLunghi.Testo(QStringLiteral("Nome"))};
    const bool scritto =
        compie({sopra, blocco, didascalia, adoCampiLunghi.Testo(QStringLiteral("IdProprietario")),
                adoCampiLunghi.Testo(QStringLiteral("Tipo")).toInt(),
                QJsonObject{{QStringLiteral("codice"), codice},
                            {QStringLiteral("blocco"), blocco},
                            {QStringLiteral("didascalia"), didascalia}}},
               presente, [&](const TestoLungo &testo) {
                   QVariantMap valori;
                   if (testo.testoModificato && testo.testo != presente.testo)
                       valori.insert(QStringLiteral("Campolungo"), testo.testo);
                   if (testo.nomeModificato && testo.nome != presente.nome)
                       valori.insert(QStringLiteral("Nome"), testo.nome);
                   if (!valori.isEmpty())
                       registra(QStringLiteral("Salvataggio di ") + didascalia, codice, valori);
               });
    if (!scritto)
        messaggi::avvisa(sopra, QStringLiteral("Impossibile salvare un testo vuoto"));
    return scritto;
}

void RiapreTesto(QWidget *sopra, const QJsonObject &come)
{
    const QString codice = come.value(QStringLiteral("codice")).toString();
    const QString didascalia = come.value(QStringLiteral("didascalia")).toString();
    if (codice.isEmpty())
        NuovoTesto(sopra, come.value(QStringLiteral("proprietario")).toString(),
                   come.value(QStringLiteral("genere")).toInt(), didascalia);
    else
        ApriTesto(sopra, codice, come.value(QStringLiteral("blocco")).toInt(), didascalia);
}

} // namespace modTarvola
