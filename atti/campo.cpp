#include "atti/campo.h"

#include "atti/caselle_pagina.h"
#include "db/schema/tabelle.h"
#include "editors/casella_genere.h"

#include <QLabel>
#include <QLineEdit>

#include <utility>

using namespace modTarvola;

namespace
{

constexpr double didascaliaPiuPiccola = 0.85;

Casella *nuova(const QString &tabella, const QString &campo, QWidget *sopra)
{
    const DescrizioneCampo sua = campoDi(tabella, campo);
    switch (sua.formato) {
    case catalogo::Formato::Data:
    case catalogo::Formato::DataEstesa:
        return new CasellaGiorno(sua, sopra);
    case catalogo::Formato::Ora:
        return new CasellaOraBreve(sua, sopra);
    case catalogo::Formato::Scelta:
        return new CasellaLettera(sua, sopra);
    default:
        return nuovaCasella(sua, sopra);
    }
}

// Il fondo di una casella che aspetta una conferma: un poco del colore di ciò che è scelto.
QColor velato(const QPalette &colori)
{
    constexpr double velo = 0.14;
    const QColor fondo = colori.color(QPalette::Base);
    const QColor scelto = colori.color(QPalette::Highlight);
    const auto mescola = [](int uno, int altro) { return qRound(uno + (altro - uno) * velo); };
    return {mescola(fondo.red(), scelto.red()), mescola(fondo.green(), scelto.green()),
            mescola(fondo.blue(), scelto.blue())};
}

} // namespace

Campo::Campo(scheda::Indirizzo dato, const QString &tabella, const QString &chi, QWidget *sopra)
    : QObject(sopra),
      dove(std::move(dato)),
      m_casella(nuova(tabella, dove.campo, sopra)),
      m_didascalia(new QLabel(m_casella->descrizione().etichetta, sopra))
{
    m_didascalia->setTextFormat(Qt::PlainText);
    m_didascalia->setBuddy(fuoco());
    m_didascalia->setForegroundRole(QPalette::PlaceholderText);
    QFont carattere = m_didascalia->font();
    carattere.setPointSizeF(carattere.pointSizeF() * didascaliaPiuPiccola);
    m_didascalia->setFont(carattere);
    m_didascalia->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
    chiama(chi);
    connect(m_casella, &Casella::cambiata, this, [this] {
        segna({});
        passa(Scritto);
        emit cambiato();
    });
    // Ciò che non si legge si vede appena lo si lascia; a dirlo aspetta chi salva.
    connect(m_casella, &Casella::lasciata, this, [this] {
        if (m_stato == Scritto && m_motivo.isEmpty())
            segna(m_casella->rifiuto());
    });
}

void Campo::chiama(const QString &chi)
{
    m_nome = chi + QStringLiteral(": ") + m_casella->descrizione().etichetta;
    m_casella->chiama(m_nome);
}

QString Campo::testo() const
{
    const auto *riga = qobject_cast<const QLineEdit *>(fuoco());
    return riga == nullptr ? QString() : riga->text();
}

void Campo::mostra(const QVariant &valore)
{
    m_nelRecord = valore;
    scoperta = false;
    m_casella->mostra(valore);
    segna({});
    passa(Mostrato);
}

void Campo::propone(const QVariant &valore, bool lettoNelTesto)
{
    if (m_stato == Scritto || (m_stato == Mostrato && !vuoto()) || (dalTesto() && !lettoNelTesto) ||
        valore.toString().trimmed().isEmpty())
        return;
    m_casella->mostra(valore);
    m_lettoNelTesto = lettoNelTesto;
    passa(Proposto);
}

void Campo::ritira()
{
    if (m_stato == Proposto && !m_lettoNelTesto)
        mostra(m_nelRecord);
}

void Campo::ritiraLettura()
{
    if (dalTesto())
        mostra(m_nelRecord);
}

void Campo::conferma()
{
    if (m_stato != Proposto)
        return;
    passa(Scritto);
    emit cambiato();
}

void Campo::scrive(const QVariant &valore)
{
    m_casella->mostra(valore);
    segna({});
    passa(Scritto);
    emit cambiato();
}

// Il colore e il carattere di una proposta sono quelli di ciò che non è ancora scritto.
void Campo::passa(Stato stato)
{
    const bool proposta = m_stato == Proposto;
    m_stato = stato;
    const bool velata = std::exchange(m_velata, dalTesto());
    const bool cambia = (stato == Proposto) != proposta || velata != m_velata;
    QWidget *parte = fuoco();
    if (cambia) {
        QFont carattere = parte->font();
        carattere.setItalic(stato == Proposto);
        parte->setFont(carattere);
        QPalette colori = parte->parentWidget()->palette();
        if (stato == Proposto)
            colori.setColor(QPalette::Text, colori.color(QPalette::PlaceholderText));
        if (m_velata)
            colori.setColor(QPalette::Base, velato(colori));
        parte->setPalette(colori);
    }
    if (m_motivo.isEmpty())
        parte->setAccessibleDescription(dalTesto() ? tr("letta nel testo, Invio la conferma")
                                        : stato == Proposto ? tr("proposta, non ancora scritta")
                                                            : QString());
}

void Campo::segna(const QString &motivo)
{
    if (motivo == m_motivo)
        return;
    m_motivo = motivo;
    fuoco()->setAccessibleDescription(motivo);
    fuoco()->setToolTip(motivo.toHtmlEscaped());
    fuoco()->setProperty("rifiutata", !motivo.isEmpty());
    fuoco()->setStyleSheet(motivo.isEmpty()
                               ? QString()
                               : QStringLiteral("border: 1px solid #c0392b; border-radius: 2px;"));
}
