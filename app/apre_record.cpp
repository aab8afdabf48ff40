#include "app/apre_record.h"

#include "contesto/contesto.h"
#include "contesto/finestre.h"
#include "db/archivio/connessioni.h"
#include "db/lavoro/codici.h"
#include "db/schema/generi.h"
#include "platform/motore/recordset.h"
#include "texts/allegati.h"
#include "texts/testi.h"

using namespace modTarvola;

namespace
{

void apreTestoOFile(QWidget *sopra, const ProprietaScheda &pagina, const QString &codice)
{
    const int tipo = GenereDi(connessione(), codice);
    if (tipo == FileAllegato)
        ApriAllegato(sopra, codice);
    else
        ApriTesto(sopra, codice, pagina.TipoLock,
                  EtichettaTraduzione(connessione(), contesto().ColonnaLingua, tipo));
}

} // namespace

void apreNelSuoEditore(QWidget *sopra, const ProprietaScheda &pagina, const QString &codice)
{
    struct Editore {
        QChar lettera;
        const char *nome = nullptr;
        QString ProprietaFinestra::*codice = nullptr;
    };
    static const Editore editori[] = {
        {u'I', "fmIndividuo", &ProprietaFinestra::IndividuoLocale},
        {u'F', "fmFamiglia", &ProprietaFinestra::FamigliaLocale},
        {u'E', "fmEvento", &ProprietaFinestra::EventoLocale},
        {u'O', "fmOperatore", &ProprietaFinestra::OperatoreLocale},
    };
    if (codice.startsWith(u'B'))
        return apreTestoOFile(sopra, pagina, codice);
    for (const Editore &editore : editori) {
        if (!codice.startsWith(editore.lettera))
            continue;
        const auto finestra = NuovaFinestra(QString::fromUtf8(editore.nome), sopra);
        finestra->proprieta.Percorso = pagina.Percorso;
        finestra->proprieta.ConOperatore = pagina.ConOperatore;
        finestra->proprieta.VoceLocale = pagina.VoceLocale;
        finestra->proprieta.TipoLock = pagina.TipoLock;
        finestra->proprieta.*editore.codice = codice;
        QString didascalia;
        if (editore.lettera == u'E') {
            const int tipo = GenereDi(connessione(), codice);
            didascalia = EtichettaTraduzione(connessione(), contesto().ColonnaLingua, tipo);
            finestra->proprieta.EventoLocaleTipo = tipo;
            finestra->Label2 = {didascalia, tipo};
        } else if (editore.lettera == u'O') {
            // Chi ha trascritto si guarda soltanto.
            const int tipo = GenereDi(connessione(), codice);
            finestra->proprieta.TipoOperatore = tipo;
            if (tipo == Trascrittore)
                finestra->proprieta.TipoLock = ado::adLockReadOnly;
        }
        ApriFinestra(*finestra, didascalia);
        return;
    }
}
