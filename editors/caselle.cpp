#include "editors/caselle.h"

#include <QGridLayout>
#include <QLabel>

#include <algorithm>

Caselle::Caselle(const QString &tabella, std::vector<DescrizioneCasella> descrizioni,
                 QWidget *sopra)
    : m_descrizioni(std::move(descrizioni))
{
    for (const DescrizioneCasella &descrizione : m_descrizioni) {
        m_caselle.push_back(nuovaCasella(descrizione.campo.isEmpty()
                                             ? descrizione.contenuto
                                             : campoDi(tabella, descrizione.campo),
                                         sopra));
        m_caselle.back()->numera(descrizione.indice);
    }
}

void Caselle::disponi(QGridLayout *griglia, QWidget *cornice, const QString &chiamata)
{
    const bool affiancate = std::any_of(m_descrizioni.begin(), m_descrizioni.end(),
                                        [](const auto &d) { return d.colonna > 0; });
    // Sola nella sua riga, una casella lascia leggere un nome intero.
    const int larghezza = cornice->fontMetrics().averageCharWidth() * (affiancate ? 14 : 46);
    for (size_t i = 0; i < m_caselle.size(); ++i) {
        const DescrizioneCasella &descrizione = m_descrizioni[i];
        if (descrizione.cornice != chiamata)
            continue;
        QWidget *parte = m_caselle[i]->parte();
        parte->setMinimumWidth(larghezza);
        // Sotto ogni riga ce n'è una per le note, che finché tacciono non prende posto.
        const int riga = 2 * (descrizione.riga < 0 ? static_cast<int>(i) : descrizione.riga);
        const int colonna = 2 * descrizione.colonna;
        QLabel *etichetta = m_caselle[i]->etichetta(cornice);
        etichetta->setObjectName(QStringLiteral("Label1_%1").arg(descrizione.indice));
        griglia->addWidget(etichetta, riga, colonna);
        griglia->addWidget(parte, riga, colonna + 1);
        if (QLabel *nota = m_caselle[i]->nota(cornice))
            griglia->addWidget(nota, riga + 1, colonna + 1);
    }
}

void Caselle::disponi(QBoxLayout *fila, const QString &chiamata)
{
    for (size_t i = 0; i < m_caselle.size(); ++i) {
        if (m_descrizioni[i].cornice == chiamata)
            fila->addWidget(m_caselle[i]->parte());
    }
}

void Caselle::mostra(const ado::Recordset &record)
{
    for (size_t i = 0; i < m_caselle.size(); ++i) {
        if (!m_descrizioni[i].campo.isEmpty())
            m_caselle[i]->mostra(record.Campo(m_descrizioni[i].campo));
    }
}

void Caselle::scrivi(ado::Recordset &record) const
{
    for (size_t i = 0; i < m_caselle.size(); ++i) {
        if (!m_descrizioni[i].campo.isEmpty())
            record.Assegna(m_descrizioni[i].campo, m_caselle[i]->valore());
    }
}

QList<bozze::Scritta> Caselle::scritte() const
{
    QList<bozze::Scritta> tutte;
    for (size_t i = 0; i < m_caselle.size(); ++i) {
        const Casella *una = m_caselle[i];
        if (!m_descrizioni[i].campo.isEmpty() && una->scritta() != una->scrittaPrima())
            tutte.append({m_descrizioni[i].campo, una->descrizione().etichetta, una->scritta(),
                          una->scrittaPrima()});
    }
    return tutte;
}

QList<discordia::Casella> Caselle::riprende(const QList<bozze::Scritta> &scritte)
{
    QList<discordia::Casella> cambiate;
    for (const bozze::Scritta &una : scritte) {
        const auto posto = std::find_if(m_descrizioni.begin(), m_descrizioni.end(),
                                        [&una](const auto &d) { return d.campo == una.nome; });
        if (posto == m_descrizioni.end())
            continue;
        Casella *sua = m_caselle.at(static_cast<size_t>(posto - m_descrizioni.begin()));
        if (sua->scrittaPrima() != una.prima && sua->scrittaPrima() != una.testo)
            cambiate.append({una.etichetta, una.testo, sua->scrittaPrima()});
        sua->rimette(una.testo);
    }
    return cambiate;
}

CasellaTesto *Caselle::operator[](int indice) const
{
    const auto nome = QStringLiteral("Text1_%1").arg(indice);
    const auto posto =
        std::find_if(m_caselle.begin(), m_caselle.end(),
                     [&nome](const Casella *una) { return una->parte()->objectName() == nome; });
    return qobject_cast<CasellaTesto *>(
        m_caselle.at(static_cast<size_t>(posto - m_caselle.begin())));
}

Casella *Caselle::operator[](QStringView campo) const
{
    const auto posto = std::find_if(m_descrizioni.begin(), m_descrizioni.end(),
                                    [campo](const auto &d) { return d.campo == campo; });
    return m_caselle.at(static_cast<size_t>(posto - m_descrizioni.begin()));
}

bool Caselle::vuote(const std::vector<int> &indici) const
{
    return std::all_of(indici.begin(), indici.end(), [this](int i) { return (*this)[i]->vuota(); });
}

void Caselle::setReadOnly(bool sola)
{
    for (Casella *casella : m_caselle)
        casella->setSolaLettura(sola);
}
