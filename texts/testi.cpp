#include "texts/testi.h"

#include "contesto/contesto.h"
#include "db/codici.h"
#include "db/collegamenti.h"
#include "db/connessioni.h"
#include "platform/finestre/messaggi.h"
#include "platform/finestre/testo_semplice.h"
#include "platform/motore/recordset.h"
#include "texts/fmTxtL.h"

#include <functional>

namespace modTarvola
{

namespace
{

// Uno scambio con la finestra dei testi. Il testo passa di mano vuoto, prima e dopo, qualunque cosa
// accada in mezzo.
class Scambio
{
public:
    Scambio(QWidget *sopra, int blocco, QString didascalia)
        : m_sopra(sopra), m_blocco(blocco), m_didascalia(std::move(didascalia))
    {
        svuota();
    }
    ~Scambio() { svuota(); }
    Scambio(const Scambio &) = delete;
    Scambio &operator=(const Scambio &) = delete;

    bool testoModificato() const { return m_testo; }
    bool nomeModificato() const { return m_nome; }
    static bool vuoto() { return contesto().TestoCampoLungo.trimmed().isEmpty(); }

    // Mostra la finestra; se ciò che ne esce non si può scrivere lo dice e la ripropone, perché
    // una pagina trascritta non vada perduta. Falso se il testo è vuoto o si è rinunciato.
    bool compie(const QString &proprietario, const std::function<void()> &scrive)
    {
        for (;;) {
            mostra(proprietario);
            if (vuoto())
                return false;
            try {
                scrive();
                return true;
            } catch (const ado::Errore &errore) {
                if (!messaggi::avverte(m_sopra, QStringLiteral("Operazione non riuscita:\n") +
                                                    errore.testo()))
                    return true;
            }
        }
    }

private:
    void mostra(const QString &proprietario)
    {
        fmTxtL finestra(m_sopra);
        finestra.TipoLock = m_blocco;
        finestra.setWindowTitle(testo_semplice::didascalia(m_didascalia));
        finestra.Form_Load(proprietario);
        finestra.exec();
        m_testo = m_testo || contesto().TestoModificato;
        m_nome = m_nome || contesto().NomeModificato;
    }
    static void svuota()
    {
        contesto().TestoCampoLungo.clear();
        contesto().NomeCampoLungo.clear();
        contesto().TestoModificato = false;
        contesto().NomeModificato = false;
    }

    QWidget *m_sopra;
    int m_blocco;
    QString m_didascalia;
    bool m_testo = false;
    bool m_nome = false;
};

void aggiunge(const QString &proprietario, int genere)
{
    ado::Transazione transazione(connessione());
    ado::Recordset adoOggetti;
    adoOggetti.Open(testoLungo({}), connessione(), ado::adLockOptimistic);
    adoOggetti.AddNew();
    adoOggetti.Assegna(QStringLiteral("Tipo"), genere);
    adoOggetti.Assegna(QStringLiteral("IdProprietario"), proprietario);
    adoOggetti.Assegna(QStringLiteral("Nome"), contesto().NomeCampoLungo);
    adoOggetti.Assegna(QStringLiteral("Campolungo"), contesto().TestoCampoLungo);
    adoOggetti.Assegna(QStringLiteral("Codice"),
                       NuovoCodice(connessione(), QStringLiteral("Binari")));
    adoOggetti.Update();
    transazione.conferma();
}

} // namespace

void NuovoTesto(QWidget *sopra, const QString &proprietario, int genere, const QString &didascalia)
{
    Scambio scambio(sopra, ado::adLockOptimistic, didascalia);
    scambio.compie(proprietario, [&] { aggiunge(proprietario, genere); });
}

bool ApriTesto(QWidget *sopra, const QString &codice, int blocco, const QString &didascalia)
{
    Scambio scambio(sopra, blocco, didascalia);
    ado::Recordset adoCampiLunghi;
    adoCampiLunghi.Open(testoLungo(codice), connessione(), blocco);
    contesto().TestoCampoLungo = adoCampiLunghi.Testo(QStringLiteral("Campolungo"));
    contesto().NomeCampoLungo = adoCampiLunghi.Testo(QStringLiteral("Nome"));
    const bool scritto =
        scambio.compie(adoCampiLunghi.Testo(QStringLiteral("IdProprietario")), [&] {
            if (scambio.testoModificato())
                adoCampiLunghi.Assegna(QStringLiteral("Campolungo"), contesto().TestoCampoLungo);
            if (scambio.nomeModificato())
                adoCampiLunghi.Assegna(QStringLiteral("Nome"), contesto().NomeCampoLungo);
            if (adoCampiLunghi.Modificato())
                adoCampiLunghi.Update();
        });
    if (!scritto)
        messaggi::avvisa(sopra, QStringLiteral("Impossibile salvare un testo vuoto"));
    return scritto;
}

} // namespace modTarvola
