#include "app/guida_pagine.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextDocument>
#include <QXmlStreamReader>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool tutteIn(const QStringList &parole, const QString &testo)
{
    const QString piano = ripiegato(testo);
    return std::all_of(parole.begin(), parole.end(),
                       [&piano](const QString &parola) { return piano.contains(parola); });
}

} // namespace

QString ripiegato(const QString &testo)
{
    QString piano = testo.normalized(QString::NormalizationForm_C);
    for (QChar &lettera : piano) {
        const QString scomposta = lettera.decomposition();
        lettera = (scomposta.isEmpty() ? lettera : scomposta.front()).toCaseFolded();
    }
    return piano;
}

QStringList paroleCercate(const QString &parole)
{
    static const QRegularExpression confine(u"[^\\p{L}\\p{N}]+"_s);
    return ripiegato(parole).split(confine, Qt::SkipEmptyParts);
}

GuidaPagine::GuidaPagine(const QString &cartella)
{
    QFile indice(cartella + u"/indice.xml"_s);
    if (!indice.open(QIODevice::ReadOnly))
        return;
    QXmlStreamReader lettore(&indice);
    QString sezione;
    while (!lettore.atEnd()) {
        if (lettore.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (lettore.name() == u"sezione")
            sezione = lettore.attributes().value(u"titolo"_s).toString();
        if (lettore.name() != u"pagina")
            continue;
        const QString nome = lettore.attributes().value(u"file"_s).toString();
        QFile file(cartella + u'/' + nome);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        QTextDocument documento;
        documento.setHtml(QString::fromUtf8(file.readAll()));
        m_pagine.push_back({nome, documento.metaInformation(QTextDocument::DocumentTitle), sezione,
                            documento.toPlainText()});
    }
}

std::vector<size_t> GuidaPagine::cerca(const QString &parole) const
{
    const QStringList cercate = paroleCercate(parole);
    std::vector<size_t> trovate;
    if (cercate.isEmpty())
        return trovate;
    for (const bool nelTitolo : {true, false}) {
        for (size_t i = 0; i < m_pagine.size(); ++i) {
            if (tutteIn(cercate, m_pagine[i].titolo) == nelTitolo &&
                tutteIn(cercate, m_pagine[i].titolo + u'\n' + m_pagine[i].testo))
                trovate.push_back(i);
        }
    }
    return trovate;
}

QString GuidaPagine::attorno(size_t pagina, const QString &parole) const
{
    constexpr int prima = 30;
    constexpr int tutto = 110;
    const QString testo = m_pagine.at(pagina).testo.normalized(QString::NormalizationForm_C);
    const QStringList cercate = paroleCercate(parole);
    const qsizetype posto = cercate.isEmpty() ? 0 : ripiegato(testo).indexOf(cercate.constFirst());
    const qsizetype inizio = qMax(qsizetype{0}, posto - prima);
    const QString pezzo = testo.mid(inizio, tutto).simplified();
    return (inizio > 0 ? u"… "_s : QString()) + pezzo + u" …"_s;
}

QString senzaFigureMancanti(const QString &html, const QString &cartella)
{
    static const QRegularExpression figura(
        u"<p class=\"figura\">\\s*<img src=\"([^\"]+)\".*?</p>"_s,
        QRegularExpression::DotMatchesEverythingOption);
    QString intera;
    qsizetype fine = 0;
    auto trovate = figura.globalMatch(html);
    while (trovate.hasNext()) {
        const auto trovata = trovate.next();
        intera += html.mid(fine, trovata.capturedStart() - fine);
        if (QFileInfo::exists(QDir(cartella).filePath(trovata.captured(1))))
            intera += trovata.captured();
        fine = trovata.capturedEnd();
    }
    return intera + html.mid(fine);
}
