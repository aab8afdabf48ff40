#include "bench/continuazione.h"
#include "bench/trascrittore.h"

#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QTest>

#include <utility>

// Ciò che chi trascrive fa col testo di un atto: lo scrive, o lo incolla e ne fa leggere le
// caselle.

// Il testo, prendendo di ciò che la pagina propone quanto costa meno che scriverlo.
void Trascrittore::scriveTesto(QWidget *testo, const QString &tutto)
{
    using continuazione::Mossa;
    const auto alPiu = tutto.size() * 2;
    for (qsizetype i = 0; i < alPiu && mostrato(testo) != tutto; ++i) {
        giudica(testo, tutto);
        const QString scritto = mostrato(testo);
        switch (continuazione::sceglie(scritto, tutto, testo->property("proposta").toString(),
                                       testo->property("tratto").toLongLong())) {
        case Mossa::Tratto:
            preme(Qt::Key_Right, Testo);
            break;
        case Mossa::Parola:
            preme(Qt::Key_Right, Testo, Qt::ControlModifier);
            break;
        case Mossa::Tutto:
            preme(Qt::Key_End, Testo);
            break;
        case Mossa::Indietro:
            preme(Qt::Key_Backspace, Testo);
            break;
        case Mossa::Lettera:
            batte(tutto.at(scritto.size()), Testo);
        }
    }
}

// Conta la proposta se è apparsa ora: ciò che resta di una già vista è la stessa.
void Trascrittore::giudica(const QWidget *testo, const QString &tutto)
{
    const QString scritto = mostrato(testo);
    const QString vista = testo->property("proposta").toString();
    const auto tratto = testo->property("tratto").toLongLong();
    const QString era = std::exchange(m_propostaDiPrima, vista);
    const QString prima = std::exchange(m_scrittoDiPrima, scritto);
    const bool stessa = scritto.startsWith(prima) && !era.isEmpty() &&
                        (prima + era).startsWith(scritto + vista.left(tratto));
    if (vista.isEmpty() || stessa || !tutto.startsWith(scritto))
        return;
    ++m_conto.mostrate;
    if (continuazione::giuste(scritto, tutto, vista) >= tratto)
        ++m_conto.giuste;
}

// Incolla il testo in un atto in cui non è scritto nulla, ne fa proporre le caselle e le confronta
// con quelle giuste; poi le conferma. Ciò che la pagina propone da sé non conta.
std::optional<Trascrittore::Letto> Trascrittore::leggeDalTesto(const serie::Atto &atto)
{
    m_dataPrima = m_atto.data;
    const serie::Atto prima = std::exchange(m_atto, atto);
    QWidget *testo = nullptr;
    QSet<QString> sue;
    for (QWidget *una : caselle()) {
        if (una->accessibleName() == QStringLiteral("Testo"))
            testo = una;
        else if (!mostrato(una).isEmpty())
            sue.insert(una->accessibleName());
    }
    if (testo == nullptr)
        return {};
    QTest::mouseClick(qobject_cast<QPlainTextEdit *>(testo)->viewport(), Qt::LeftButton);
    QApplication::clipboard()->setText(atto.testo);
    preme(Qt::Key_V, Testo, Qt::ControlModifier);
    preme(Qt::Key_F11, Comandi);
    Letto letto;
    QStringList viste;
    for (const QWidget *una : caselle()) {
        const QString nome = una->accessibleName();
        if (una->inherits("QComboBox") || una->inherits("QPlainTextEdit") || sue.contains(nome))
            continue;
        viste.append(nome);
        const bool vuota = mostrato(una).isEmpty();
        if (attesa(una).isEmpty() && vuota)
            continue;
        ++(vuota ? letto.vuote : sbagliata(una) ? letto.sbagliate : letto.giuste);
        if (vuota || sbagliata(una))
            letto.quali.append(nome + QStringLiteral(": ") + mostrato(una) + QStringLiteral(" / ") +
                               attesa(una));
    }
    for (const QString &nome : atto.caselle.keys()) {
        if (!viste.contains(nome) && !sue.contains(nome))
            ++letto.vuote;
    }
    preme(Qt::Key_F11, Comandi, Qt::ShiftModifier);
    m_atto = prima;
    return letto;
}
