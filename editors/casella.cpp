#include "editors/casella.h"

#include "editors/casella_formati.h"
#include "editors/casella_genere.h"
#include "editors/casella_ora.h"
#include "editors/casella_scelta.h"
#include "platform/errore.h"

#include <QFocusEvent>
#include <QLabel>
#include <QWidget>

DescrizioneCampo campoDi(QStringView tabella, QStringView colonna)
{
    const auto *trovata = modTarvola::catalogo::tabella(tabella).colonna(colonna);
    if (trovata == nullptr)
        throw ado::Errore(
            ado::Causa::Altro,
            QStringLiteral("la tabella %1 non ha la colonna %2").arg(tabella, colonna));
    return {trovata->formato, trovata->etichetta.toString(), trovata->lunghezza,
            trovata->lettere.toString()};
}

Casella::Casella(DescrizioneCampo descrizione, QWidget *sopra)
    : QObject(sopra), m_descrizione(std::move(descrizione))
{
}

void Casella::mostra(const QVariant &valore)
{
    m_mostrato = valore;
    presenta();
    m_scrittaPrima = scritta();
}

void Casella::rimette(const QString &testo)
{
    mette(testo);
    emit cambiata();
}

void Casella::riprende()
{
    parte()->setFocus();
}

QLabel *Casella::etichetta(QWidget *sopra)
{
    auto *nuova = new QLabel(m_descrizione.etichetta, sopra);
    nuova->setBuddy(parte());
    return nuova;
}

QLabel *Casella::nota(QWidget * /*sopra*/)
{
    return nullptr;
}

void Casella::chiama(const QString &nome) const
{
    parte()->setAccessibleName(nome);
}

void Casella::sorveglia()
{
    parte()->installEventFilter(this);
}

bool Casella::eventFilter(QObject *guardato, QEvent *evento)
{
    if (evento->type() == QEvent::FocusOut) {
        const auto motivo = static_cast<QFocusEvent *>(evento)->reason();
        if (motivo != Qt::ActiveWindowFocusReason && motivo != Qt::PopupFocusReason) {
            riordina();
            emit lasciata();
        }
    }
    return QObject::eventFilter(guardato, evento);
}

Casella *nuovaCasella(const DescrizioneCampo &descrizione, QWidget *sopra)
{
    switch (descrizione.formato) {
    case Formato::Data:
    case Formato::DataEstesa:
        return new CasellaData(descrizione, sopra);
    case Formato::Ora:
        return new CasellaOra(descrizione, sopra);
    case Formato::Pagina:
        return new CasellaPagina(descrizione, sopra);
    case Formato::Password:
        return new CasellaPassword(descrizione, sopra);
    case Formato::Scelta:
        return new CasellaScelta(descrizione, sopra);
    case Formato::Genere:
        return new CasellaGenere(descrizione, sopra);
    case Formato::Testo:
    case Formato::Nessuno:
        break;
    }
    return new CasellaTesto(descrizione, sopra);
}
