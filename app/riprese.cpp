#include "app/riprese.h"

#include "app/fmBozze.h"
#include "contesto/bozze.h"
#include "contesto/contesto.h"
#include "db/archivio/connessioni.h"
#include "platform/finestre/messaggi.h"
#include "texts/testi.h"

using namespace modTarvola;

Riprese::Riprese(QWidget *finestra, ApreScheda apreScheda)
    : m_finestra(finestra), m_apreScheda(std::move(apreScheda))
{
}

bool Riprese::offre(const QString &archivio)
{
    const qsizetype quante = bozze::ritrova(archivio);
    return quante > 0 &&
           scegliere(archivio, QObject::tr("Riprendi la bozza"),
                     QObject::tr("L'ultima volta il programma è finito prima che questo fosse "
                                 "registrato. Ciò che non si riprende resta fra le ultime bozze."),
                     quante);
}

void Riprese::mostraUltime()
{
    const QString archivio = contesto().PercorsoCorrente;
    if (archivio.isEmpty())
        return messaggi::avvisa(m_finestra, QObject::tr("Nessun file è aperto"));
    if (bozze::ultime(archivio).isEmpty())
        return messaggi::avvisa(m_finestra, QObject::tr("Di questo file non ci sono bozze"));
    scegliere(archivio, QObject::tr("Ultime bozze"),
              QObject::tr("Ciò che era scritto in finestre chiuse senza registrare: le ultime %1, "
                          "per %2 giorni.")
                  .arg(bozze::quanteUltime)
                  .arg(bozze::giorniUltime),
              1);
}

bool Riprese::scegliere(const QString &archivio, const QString &titolo, const QString &testo,
                        qsizetype scelte)
{
    QList<bozze::Bozza> daRiprendere;
    {
        fmBozze finestra(m_finestra, titolo, testo, bozze::ultime(archivio), scelte);
        finestra.scarta = [&archivio](const bozze::Bozza &una) { bozze::toglie(archivio, una); };
        if (finestra.exec() == QDialog::Accepted)
            daRiprendere = finestra.scelte();
    }
    // Le pagine restano aperte; una pila di editori si chiude prima che se ne riprenda un'altra.
    std::stable_partition(daRiprendere.begin(), daRiprendere.end(), [](const bozze::Bozza &una) {
        return una.finestre.constFirst().nome == QStringLiteral("fmScheda");
    });
    for (const bozze::Bozza &una : std::as_const(daRiprendere))
        messaggi::protetto(m_finestra, [&] { riprende(archivio, una); });
    return !daRiprendere.isEmpty();
}

void Riprese::riprende(const QString &archivio, const bozze::Bozza &bozza)
{
    ApriArchivio(archivio);
    const bozze::Finestra &prima = bozza.finestre.constFirst();
    if (prima.nome == QStringLiteral("fmScheda")) {
        m_apreScheda(prima);
        bozze::toglie(archivio, bozza);
        return;
    }
    bozze::riprende(bozza.finestre, [archivio, bozza] { bozze::toglie(archivio, bozza); });
    riapre(prima);
    bozze::smette();
}

void Riprese::riapre(const bozze::Finestra &prima)
{
    if (prima.nome == QStringLiteral("fmTxtL"))
        return RiapreTesto(m_finestra, prima.come);
    const auto editore = NuovaFinestra(prima.nome, m_finestra);
    if (editore == nullptr)
        return;
    editore->riprende(prima.come);
    editore->proprieta.Percorso = contesto().PercorsoCorrente;
    editore->proprieta.ConOperatore = contesto().OperatoreCorrente;
    ApriFinestra(*editore, prima.titolo);
}
