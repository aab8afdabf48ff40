#pragma once

#include <QString>
#include <QStringView>

#include <vector>

// I pezzi di un testo, e quanto due parole si somigliano.
namespace modTarvola::formule
{

// Una parola (lettere e cifre, con l'apostrofo che la lega alla seguente) o un segno solo. Gli
// spazi stanno fra un pezzo e l'altro.
struct Pezzo {
    qsizetype inizio = 0;
    qsizetype lunghezza = 0;
    bool parola = false;
    qsizetype fine() const { return inizio + lunghezza; }
};

std::vector<Pezzo> pezzi(QStringView testo);

// Com'è scritta una parola rispetto a com'è in una casella o in un dizionario.
enum class Veste { Uguale, Minuscola, Iniziale, Iniziali, Maiuscola };
constexpr int vesti = 5;
QString vestita(const QString &testo, Veste veste);
// La veste in cui `testo` dà `scritto`; da chiamare se sono uguali a meno di maiuscole.
Veste vesteDi(const QString &testo, const QString &scritto);

// Vero se una delle due può essere l'altra in un altro caso o in un'altra lingua: "Giuseppe",
// "Josephi".
bool somiglia(const QString &una, const QString &altra);
// Vero se la parola, a metà, può essere l'inizio dell'altra in un'altra forma.
bool inizia(const QString &parola, const QString &meta);
// Il costo, da 0 a 1, di leggere una parola per un'altra: 0 se sono uguali, poco se cambia la
// desinenza o una lettera.
float distanza(const QString &una, const QString &altra);

} // namespace modTarvola::formule
