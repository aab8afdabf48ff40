#include "platform/disco/prudenza.h"

#include "platform/disco/shell.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

#include <algorithm>

namespace prudenza
{

namespace
{

// Resta posto per ciò che vi aggiunge chi scrive accanto, e poi dà il nome.
constexpr qsizetype byteAlMassimo = 200;
constexpr qsizetype lettereDellEstensione = 16;

// Programmi, istruzioni, collegamenti e pacchetti, dei sistemi da cui un allegato può venire:
// quelli di un altro possono avere qui chi li esegue.
const QStringList &estensioni()
{
    static const QStringList tutte =
        QStringLiteral("action appimage application awk bash bat bin cmd com command cpl csh deb "
                       "desktop directory dll elf exe fish flatpak flatpakref flatpakrepo gadget "
                       "hta inf ins jar jnlp js jse ksh lnk lua mjs mount msc msi msp mst out php "
                       "pif pl ps1 psm1 py pyc pyw pyz pyzw rb reg rpm run scf scr sct service sh "
                       "snap so tcl tk url vb vbe vbs webloc ws wsc wsf wsh zsh")
            .split(u' ');
    return tutte;
}

// Gli altri programmi e linguaggi discendono dai primi due.
const QStringList &tipi()
{
    static const QStringList tutti =
        QStringLiteral("application/x-executable application/x-sharedlib application/x-desktop "
                       "application/x-ms-dos-executable application/x-msdownload "
                       "application/vnd.microsoft.portable-executable application/x-msi "
                       "application/x-ms-shortcut application/x-mswinurl application/x-bat "
                       "application/x-java-archive application/java-archive "
                       "application/x-java-jnlp-file application/x-java application/x-mach-binary "
                       "application/javascript text/javascript application/x-powershell "
                       "application/vnd.appimage application/x-iso9660-appimage "
                       "application/vnd.debian.binary-package application/x-deb "
                       "application/x-rpm application/vnd.flatpak application/vnd.flatpak.ref "
                       "application/vnd.snap")
            .split(u' ');
    return tutti;
}

bool invisibile(QChar lettera)
{
    switch (lettera.category()) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_PrivateUse:
    case QChar::Other_NotAssigned:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QString accorciato(const QString &nome)
{
    if (QFile::encodeName(nome).size() <= byteAlMassimo)
        return nome;
    const qsizetype punto = nome.lastIndexOf(u'.');
    const bool estensione = punto > 0 && nome.size() - punto - 1 <= lettereDellEstensione;
    const QString fine = estensione ? nome.mid(punto) : QString();
    QString inizio = estensione ? nome.left(punto) : nome;
    while (QFile::encodeName(inizio + fine).size() > byteAlMassimo)
        inizio.chop(inizio.back().isLowSurrogate() ? 2 : 1);
    return inizio + fine;
}

bool programmaDaiByte(const QByteArray &inizio)
{
    static const QByteArray segni[] = {"\177ELF",
                                       "MZ",
                                       "#!",
                                       "\xef\xbb\xbf#!",
                                       "\xca\xfe\xba\xbe",
                                       "\xfe\xed\xfa\xce",
                                       "\xfe\xed\xfa\xcf",
                                       "\xce\xfa\xed\xfe",
                                       "\xcf\xfa\xed\xfe",
                                       "dex\n",
                                       "!<arch>\ndebian"};
    return inizio.contains("[Desktop Entry]") || inizio.contains("[Desktop Action") ||
           std::any_of(std::begin(segni), std::end(segni),
                       [&inizio](const QByteArray &segno) { return inizio.startsWith(segno); });
}

bool tipoDiProgramma(const QMimeType &tipo)
{
    return std::any_of(tipi().begin(), tipi().end(),
                       [&tipo](const QString &uno) { return tipo.inherits(uno); });
}

} // namespace

QString nomeInnocuo(const QString &percorso)
{
    QString nome = shell::NomeFileDaPercorso(percorso);
    nome.removeIf(invisibile);
    const auto daTogliere = [](QChar lettera) { return lettera == u'.' || lettera.isSpace(); };
    qsizetype prima = 0;
    while (prima < nome.size() && (daTogliere(nome.at(prima)) || nome.at(prima) == u'-'))
        ++prima;
    nome = accorciato(nome.mid(prima));
    while (!nome.isEmpty() && daTogliere(nome.back()))
        nome.chop(1);
    return nome;
}

bool siEsegue(const QString &percorso)
{
    constexpr qint64 guardati = 4096;
    if (estensioni().contains(QFileInfo(percorso).suffix().toLower()))
        return true;
    QFile file(percorso);
    if (!file.open(QIODevice::ReadOnly) || programmaDaiByte(file.read(guardati)))
        return true;
    const QMimeDatabase tipiNoti;
    const auto dalNome = tipiNoti.mimeTypesForFileName(percorso);
    return std::any_of(dalNome.begin(), dalNome.end(), tipoDiProgramma) ||
           tipoDiProgramma(tipiNoti.mimeTypeForFile(percorso, QMimeDatabase::MatchContent));
}

} // namespace prudenza
