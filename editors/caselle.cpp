#include "editors/caselle.h"

#include "platform/lingua/italiano.h"

#include <QFocusEvent>
#include <QGridLayout>
#include <QLabel>

#include <algorithm>

namespace
{

constexpr int lunghezzaMassima = 60;
constexpr int caratteriInVista = 48;

QString mostrato(const QVariant &valore, Formato formato)
{
    const QString testo = valore.toString();
    switch (formato) {
    case Formato::Data:
        return italiano::mostraData(testo);
    case Formato::DataEstesa:
        return italiano::mostraDataEstesa(testo);
    case Formato::Ora:
        return italiano::mostraOra(testo);
    default:
        return testo;
    }
}

// Il valore da scrivere per un testo cambiato; non valido se il testo non si può leggere.
QVariant letto(const QString &testo, Formato formato, const QString &giorno)
{
    const auto valore = [](const auto &esito) { return esito ? QVariant(*esito) : QVariant(); };
    switch (formato) {
    case Formato::Data:
    case Formato::DataEstesa:
        return valore(italiano::leggiData(testo));
    case Formato::Ora:
        return valore(italiano::leggiOra(testo, giorno));
    case Formato::Pagina:
        return valore(italiano::leggiPagina(testo));
    default:
        return testo;
    }
}

// Vero se ogni casella ha una riga per sé.
bool unaPerRiga(const std::vector<DescrizioneCasella> &descrizioni)
{
    return std::none_of(descrizioni.begin(), descrizioni.end(),
                        [](const DescrizioneCasella &una) { return una.colonna > 0; });
}

} // namespace

void Casella::focusOutEvent(QFocusEvent *evento)
{
    QLineEdit::focusOutEvent(evento);
    if (evento->reason() != Qt::ActiveWindowFocusReason && evento->reason() != Qt::PopupFocusReason)
        emit lasciata();
}

void nascondeCaratteri(QLineEdit *casella)
{
    casella->setEchoMode(QLineEdit::Password);
    // Il segno che cela i caratteri è dello stile, che ne sceglierebbe un altro.
    casella->setStyleSheet(QStringLiteral("lineedit-password-character: %1").arg(int{'*'}));
}

Caselle::Caselle(std::vector<DescrizioneCasella> descrizioni, QWidget *cornice)
    : m_descrizioni(std::move(descrizioni)), m_mostrati(m_descrizioni.size())
{
    for (const DescrizioneCasella &descrizione : m_descrizioni) {
        auto *casella = new Casella(cornice);
        casella->setObjectName(QStringLiteral("Text1_%1").arg(descrizione.indice));
        casella->setMaxLength(lunghezzaMassima);
        // Sola nella sua riga, una casella lascia leggere un nome intero.
        if (unaPerRiga(m_descrizioni))
            casella->setMinimumWidth(casella->fontMetrics().averageCharWidth() * caratteriInVista);
        if (descrizione.formato == Formato::Password)
            nascondeCaratteri(casella);
        Text1.push_back(casella);
    }
}

void Caselle::disponi(QGridLayout *griglia, QWidget *cornice, const QString &chiamata)
{
    const bool affiancate = std::any_of(m_descrizioni.begin(), m_descrizioni.end(),
                                        [](const auto &d) { return d.colonna > 0; });
    const int larghezza = cornice->fontMetrics().averageCharWidth() * (affiancate ? 14 : 46);
    for (size_t i = 0; i < Text1.size(); ++i) {
        const DescrizioneCasella &descrizione = m_descrizioni[i];
        if (descrizione.cornice != chiamata)
            continue;
        Text1[i]->setMinimumWidth(larghezza);
        const int riga = descrizione.riga < 0 ? static_cast<int>(i) : descrizione.riga;
        auto *etichetta = new QLabel(descrizione.etichetta, cornice);
        etichetta->setObjectName(QStringLiteral("Label1_%1").arg(descrizione.indice));
        etichetta->setBuddy(Text1[i]);
        griglia->addWidget(etichetta, riga, descrizione.colonna * 2);
        griglia->addWidget(Text1[i], riga, descrizione.colonna * 2 + 1);
    }
}

void Caselle::mostra(const ado::Recordset &record)
{
    for (size_t i = 0; i < Text1.size(); ++i) {
        const DescrizioneCasella &descrizione = m_descrizioni[i];
        if (descrizione.campo.isEmpty())
            continue;
        Text1[i]->setText(mostrato(record.Campo(descrizione.campo), descrizione.formato));
        Text1[i]->setCursorPosition(0);
        m_mostrati[i] = Text1[i]->text();
    }
}

void Caselle::scrivi(ado::Recordset &record) const
{
    for (size_t i = 0; i < Text1.size(); ++i) {
        const DescrizioneCasella &descrizione = m_descrizioni[i];
        if (descrizione.campo.isEmpty())
            continue;
        const QString testo = Text1[i]->text();
        if (testo != m_mostrati[i]) {
            // Un'ora senza giorno è del giorno dell'evento.
            const QString giorno = descrizione.formato == Formato::Ora
                                       ? record.Testo(QStringLiteral("Data"))
                                       : QString();
            record.Assegna(descrizione.campo, letto(testo, descrizione.formato, giorno));
        }
        if (record.Testo(descrizione.campo).trimmed().isEmpty())
            record.Assegna(descrizione.campo, QVariant());
    }
}

QString Caselle::rifiuto(int indice) const
{
    const auto posto = std::find_if(m_descrizioni.begin(), m_descrizioni.end(),
                                    [indice](const auto &d) { return d.indice == indice; });
    const auto i = static_cast<size_t>(posto - m_descrizioni.begin());
    if (posto->formato == Formato::Testo || posto->formato == Formato::Password)
        return {};
    if (Text1[i]->text().trimmed().isEmpty()) {
        Text1[i]->clear();
        return {};
    }
    if (Text1[i]->text() == m_mostrati[i] || letto(Text1[i]->text(), posto->formato, {}).isValid())
        return {};
    return posto->formato == Formato::Pagina
               ? QStringLiteral("Non è stata inserito un numero di pagina valido")
               : QStringLiteral("Non è stata inserita una data valida");
}

Casella *Caselle::operator[](int indice) const
{
    const auto posto = std::find_if(m_descrizioni.begin(), m_descrizioni.end(),
                                    [indice](const auto &d) { return d.indice == indice; });
    return Text1.at(static_cast<size_t>(posto - m_descrizioni.begin()));
}

bool Caselle::vuote(const std::vector<int> &indici) const
{
    return std::all_of(indici.begin(), indici.end(),
                       [this](int i) { return (*this)[i]->text().trimmed().isEmpty(); });
}

void Caselle::setReadOnly(bool sola)
{
    for (Casella *casella : Text1)
        casella->setReadOnly(sola);
}
