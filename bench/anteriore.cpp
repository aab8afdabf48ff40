// Misura la conversione di un archivio grande nel formato anteriore, fatto da uno vuoto.
//   anteriore VUOTO GRANDE [INDIVIDUI]

#include "bench/tavola.h"
#include "db/archivio/conversione.h"
#include "platform/motore/ado.h"

#include <QFile>
#include <QtEndian>
#include <QTextStream>

#include <algorithm>

namespace
{

constexpr qsizetype pagina = 4096;
// Dove l'archivio vuoto tiene la tabella Individui: la definizione e, nella pagina dopo, la mappa.
constexpr qsizetype definizione = 33;

template <typename Numero>
void scrive(QByteArray &in, qsizetype posto, Numero numero)
{
    if (in.size() < posto + qsizetype{sizeof numero})
        in.resize(posto + qsizetype{sizeof numero}, '\0');
    qToLittleEndian(numero, in.data() + posto);
}

QByteArray riga(int numero)
{
    const QByteArray testi[] = {"I" + QByteArray::number(numero),
                                "V" + QByteArray::number(numero / 4),
                                "Giovanni Battista",
                                "Rossi di " + QByteArray::number(numero % 977),
                                {},
                                {},
                                "fu Pietro",
                                "3 anni",
                                "M",
                                "S",
                                {}};
    QByteArray byte;
    scrive<quint16>(byte, 0, 14);
    scrive<qint32>(byte, 2, 1);
    scrive<double>(byte, 6, 38000.5);
    scrive<double>(byte, 14, -90000.0 + numero % 1000);
    QByteArray confini;
    quint16 presenti = 0x3800;
    for (int i = 0; i < 11; ++i) {
        scrive(confini, 2 * i, static_cast<quint16>(byte.size()));
        presenti = static_cast<quint16>(presenti | (testi[i].isEmpty() ? 0 : 1 << i));
        if (!testi[i].isEmpty())
            byte += "\xff\xfe" + testi[i];
    }
    scrive(byte, byte.size(), static_cast<quint16>(byte.size()));
    for (qsizetype i = 10; i >= 0; --i)
        byte += confini.mid(2 * i, 2);
    scrive<quint16>(byte, byte.size(), 11);
    scrive(byte, byte.size(), presenti);
    return byte;
}

// Aggiunge le righe in pagine nuove e le segna nella mappa, su pagine sue.
QByteArray riempito(QByteArray file, int individui)
{
    const qsizetype prima = file.size() / pagina;
    for (int numero = 1; numero <= individui;) {
        QByteArray righe(pagina, '\0');
        scrive<quint32>(righe, 0, 0x00000101);
        scrive(righe, 4, static_cast<quint32>(definizione));
        qsizetype fine = pagina;
        quint16 quante = 0;
        for (; numero <= individui; ++numero, ++quante) {
            const QByteArray una = riga(numero);
            if (fine - una.size() < 16 + 2 * quante)
                break;
            fine -= una.size();
            righe.replace(fine, una.size(), una);
            scrive(righe, 14 + 2 * quante, static_cast<quint16>(fine));
        }
        scrive(righe, 12, quante);
        file += righe;
    }
    const qsizetype mappa = (definizione + 1) * pagina;
    const qsizetype rigaMappa =
        mappa + (qFromLittleEndian<quint16>(file.constData() + mappa + 14) & 0x1fff);
    constexpr qsizetype perPagina = (pagina - 4) * 8;
    const qsizetype ultima = file.size() / pagina;
    for (qsizetype i = 0; i * perPagina < ultima; ++i) {
        QByteArray segni(pagina, '\0');
        scrive<quint32>(segni, 0, 0x00000105);
        for (qsizetype quale = qMax(prima, i * perPagina);
             quale < qMin(ultima, (i + 1) * perPagina); ++quale) {
            const qsizetype bit = quale - i * perPagina;
            segni[4 + bit / 8] = static_cast<char>(segni[4 + bit / 8] | 1 << (bit % 8));
        }
        scrive(file, rigaMappa + 1 + 4 * i, static_cast<quint32>(file.size() / pagina));
        file += segni;
    }
    scrive(file, definizione * pagina + 0x10, static_cast<quint32>(individui));
    return file;
}

bool scriveGrande(const QString &vuoto, const QString &grande, int individui)
{
    QFile da(vuoto);
    QFile a(grande);
    if (!da.open(QIODevice::ReadOnly) || !a.open(QIODevice::WriteOnly))
        return false;
    const QByteArray byte = riempito(da.readAll(), individui);
    return a.write(byte) == byte.size();
}

void misura(Tavola &tavola, const QString &grande)
{
    const QString nuovo = grande + QStringLiteral(".nuovo");
    double memoria = 0;
    tavola.assoluto("convertire il formato precedente, s", 3, [&] {
        QFile::remove(nuovo);
        azzeraMemoriaMassima();
        const double secondi = millisecondi([&] {
                                   if (!modTarvola::converte(grande, nuovo, [](qint64, qint64) {
                                            return true;
                                        })->intero())
                                       qFatal("la conversione ha perduto qualcosa");
                               }) /
                               1000;
        memoria = std::max(memoria, memoriaMassima());
        return secondi;
    });
    tavola.assoluto("memoria della conversione, MiB", 64, memoria);
    QFile::remove(nuovo);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        QTextStream(stderr) << "usage: anteriore EMPTY-FILE BIG-FILE [INDIVIDUALS]\n";
        return 2;
    }
    const QString grande = QFile::decodeName(argv[2]);
    const int individui = argc > 3 ? QByteArray(argv[3]).toInt() : 100'000;
    try {
        if (!scriveGrande(QFile::decodeName(argv[1]), grande, individui))
            return 2;
        Tavola tavola(3);
        misura(tavola, grande);
        QFile::remove(grande);
        return tavola.bastata() ? 0 : 1;
    } catch (const ado::Errore &errore) {
        QTextStream(stderr) << errore.testo() << '\n';
        return 2;
    }
}
