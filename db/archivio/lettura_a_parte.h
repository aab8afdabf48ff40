#pragma once

#include "platform/motore/ado.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>

class QThread;

namespace modTarvola
{

// Una lettura dell'archivio fatta in un filo a parte, con una connessione sua che non può scrivere:
// chi la chiede non aspetta mai, e ne riceve l'esito nel proprio filo.
//
//   m_lettura = std::make_unique<LetturaAParte>(percorso,
//       [tutto](ado::Connection &sua, const LetturaAParte::Prosegue &prosegue) { … },  nel filo a
//       parte [this, tutto](const QString &guasto) { … });                            qui, se non
//       fermata
//
// Ciò che si legge sta in un valore che le due funzioni dividono, e che fra l'una e l'altra nessuno
// tocca. Distruggerla la ferma, anche a metà di un'istruzione, e aspetta che il filo sia uscito:
// dopo, del file non ha più nulla in mano e `consegna` non è più chiamata. Chi legge lo faccia a
// pezzi corti: finché un'istruzione non è finita nessuno scrive nel file.
class LetturaAParte : public QObject
{
public:
    using Prosegue = std::function<bool()>;
    using Legge = std::function<void(ado::Connection &, const Prosegue &)>;
    // `consegna` riceve il motivo per cui non si è letto, vuoto se è andata bene.
    using Consegna = std::function<void(const QString &guasto)>;

    LetturaAParte(const QString &percorso, Legge legge, Consegna consegna);
    ~LetturaAParte() override;

    bool finita() const { return m_finita; }

private:
    QString compie(const QString &percorso, const Legge &legge) const;

    std::atomic<bool> m_ferma{false};
    bool m_finita = false;
    std::unique_ptr<QThread> m_filo;
};

} // namespace modTarvola
