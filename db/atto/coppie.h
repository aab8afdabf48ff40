#pragma once

#include "db/atto/atto.h"
#include "db/atto/lettura_lenta.h"

#include <QHash>

#include <vector>

// Le coppie che un archivio conosce già: dal marito la moglie, come l'ultimo atto li scrisse.
namespace modTarvola
{

// Le famiglie in cui una coppia sta intera, trovate dal nome e cognome del marito senza badare a
// maiuscole e accenti. Tiene due numeri per coppia; i nomi li rilegge chi ne trova una.
class Coppie
{
public:
    // Quelle di un atto già scritto nel file, dopo tutte le altre.
    void impara(const Atto &atto);
    void aggiunge(const QString &nome, const QString &cognome, const QString &famiglia);
    // Da chiamare dopo aver aggiunto molte coppie, prima di cercare.
    void ordina();
    // I codici delle famiglie di chi si chiama così, dalla più nuova, al più `quante`; due uomini
    // di nome diverso possono, di rado, trovarsi insieme.
    QStringList famiglie(const QString &nome, const QString &cognome, size_t quante) const;
    // Vero se negli atti imparati i padri hanno per lo più accanto la madre, e, dove un marito è
    // tornato, la moglie era per lo più la stessa di prima: allora proporla aiuta.
    bool fedeli() const { return m_giuste >= m_sbagliate && m_accompagnati >= m_soli; }
    size_t byte() const { return m_coppie.capacity() * sizeof(Coppia); }

private:
    struct Coppia {
        quint32 segno;
        quint32 famiglia;
        auto operator<=>(const Coppia &) const = default;
    };
    std::vector<Coppia> m_coppie;
    size_t m_ordinate = 0;
    QHash<QString, QString> m_mogli; // degli atti imparati, per vedere quanto ci si indovina
    int m_giuste = 2;                // all'inizio si dà credito
    int m_sbagliate = 0;
    int m_accompagnati = 0; // i padri con la madre, e senza
    int m_soli = 0;
};

// Tutte quelle dell'archivio; è per un filo a parte. Lancia ado::Errore se non si legge.
Coppie leggeCoppie(ado::Connection &connessione, const Prosegue &prosegue);

// Chi sta con un uomo in una famiglia: i campi dell'uno e dell'altra, e dove nacque il loro figlio.
struct CoppiaNota {
    Campi marito;
    Campi moglie;
    QString luogo;
};
// La coppia di chi si chiama così: l'ultima fra le `vicine`, o quella di `tutte` se vi ha sempre la
// stessa moglie. Niente se non si conosce. Lancia ado::Errore se non si legge.
std::optional<CoppiaNota> coppiaNota(ado::Connection &connessione, const Coppie &vicine,
                                     const Coppie &tutte, const QString &nome,
                                     const QString &cognome);

} // namespace modTarvola
