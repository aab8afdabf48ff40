#pragma once

#include <QKeySequence>
#include <QMap>
#include <QObject>

#include <vector>

class QAbstractButton;
class QAction;
class QKeyEvent;

// I comandi nostri e i loro tasti, che l'utente può cambiare. Un comando nuovo si scrive una volta
// nel catalogo (catalogo_comandi.cpp); la sua azione, o il suo bottone, prende da lì nome, tasto e
// suggerimento con `lega`, e da allora li segue. Nessun altro scrive un tasto di questi comandi.
namespace comandi
{

// Le finestre in cui un comando vale, da sommare. Lo stesso tasto a due comandi è un conflitto
// solo dove valgono entrambi.
enum Dove : unsigned {
    Archivi = 1,
    Registri = 2,
    Voci = 4,
    AltriElenchi = 8,
    Elenchi = Archivi | Registri | Voci | AltriElenchi,
    Scheda = 16,
    AreaVuota = 32,
    // La finestra principale, qualunque cosa vi stia davanti.
    Principale = Elenchi | Scheda | AreaVuota,
    Record = 64,
    Testo = 128,
    Caselle = Scheda | Record | Testo,
    Dappertutto = Principale | Record | Testo,
};

struct Comando {
    // Il nome con cui il tasto sta nelle impostazioni: non cambia più.
    QString id;
    // Come si legge nel menu, con la lettera sottolineata se ne ha una.
    QString nome;
    unsigned dove = Dappertutto;
    // Il primo tasto; vuoto se nasce senza.
    QKeySequence primo = {};

    // Il nome senza la lettera sottolineata.
    QString piano() const;
    // "Scheda", "Elenco di voci": dove vale, per chi legge.
    QString finestre() const;
};

// Tutti i comandi nostri, nell'ordine in cui si elencano.
const std::vector<Comando> &catalogo();
// Il comando dell'id; un id che non c'è è un errore del programma.
const Comando &comando(const QString &id);

// Perché il tasto non può essere di un comando che vale in quelle finestre: serve alle caselle di
// testo, ai menu o a un comando fisso. Vuoto se è libero da tutto questo.
QString impedimento(const QKeySequence &tasto, unsigned dove);

// Un tasto per ogni comando: un valore, da provare prima di renderlo quello del programma.
class Tasti
{
public:
    // I primi.
    Tasti();
    // Quelli delle impostazioni dell'utente. Ciò che non si legge, che serve ad altro o che hanno
    // due comandi insieme non vale; il primo tasto di un comando cede a quello scelto per un altro.
    static Tasti ricordati();
    void ricorda() const;

    QKeySequence di(const QString &id) const { return m_tasti.value(id); }
    void da(const QString &id, const QKeySequence &tasto) { m_tasti[id] = tasto; }
    // Il comando che ha già il tasto dove vale quello dell'id; nullo se nessuno.
    const Comando *conflitto(const QString &id, const QKeySequence &tasto) const;
    bool operator==(const Tasti &altri) const = default;

private:
    QMap<QString, QKeySequence> m_tasti;
};

// I tasti in vigore.
const Tasti &inVigore();
// Li cambia, per tutte le finestre aperte, e li ricorda.
void cambia(const Tasti &nuovi);
// Riprende quelli delle impostazioni, dopo che si è detto in quale file stanno.
void riprende();

// Vero se l'evento è il tasto del comando: per chi i tasti li riceve da sé.
bool corrisponde(const QKeyEvent &evento, const QString &id);
// Nome e tasto del comando: "Salva (Ctrl+S)".
QString suggerimento(const QString &id);

enum class Porta { NomeETasto, SoloNome };
// L'azione prende il nome del comando, se non ne ha uno suo, il tasto e il suggerimento che li
// dice, e li segue finché vive. Con SoloNome il tasto è di un'altra azione dello stesso comando.
void lega(QAction *azione, const QString &id, Porta porta = Porta::NomeETasto);
// Il tasto preme il bottone quando la tastiera è in `dove` o in ciò che contiene.
void lega(QAbstractButton *bottone, QWidget *dove, const QString &id);

// Dice che i tasti sono cambiati.
class Segnali : public QObject
{
    Q_OBJECT

signals:
    void cambiati();
};
Segnali &segnali();

} // namespace comandi
