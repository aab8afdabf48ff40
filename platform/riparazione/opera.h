#pragma once

#include "platform/riparazione/alberi.h"
#include "platform/riparazione/salvataggio.h"
#include "platform/riparazione/salvate.h"

// Ciò che chi salva le righe e chi salva le coppie hanno in comune: il file danneggiato, quello che
// si sa delle sue pagine, e dove le righe vanno a finire.
namespace salvataggio
{

struct Opera {
    Opera(const QString &danneggiato, bool badaAllaTestata, ado::Connection &nuovo,
          const Regole &leRegole, const provvisorio::Passo &ilPasso);

    // Vero se almeno uno degli alberi è intero.
    bool unoIntero(const QStringList &nomi) const;
    // Vero se la riga può essere della tabella, da ciò con cui comincia.
    bool adatta(const Tabella &tabella, const QList<pagine::Valore> &riga) const;
    void avanza(qint64 fatte) const { provvisorio::avanza(passo, fatte, file.quante()); }

    pagine::File file;
    const Regole &regole;
    const provvisorio::Passo &passo;
    Salvate salvate;
    pagine::Alberi alberi;
    // Vero se si sa di ogni pagina libera che lo è.
    bool libereIntere;
};

} // namespace salvataggio
