#pragma once

#include <QByteArrayView>
#include <QFile>
#include <QtEndian>

#include <array>
#include <optional>

// Le pagine di un archivio nel formato anteriore (Jet 4.0), solo da leggere. Il file può essere
// danneggiato: niente di ciò che vi sta scritto si crede senza averlo controllato.
namespace jet
{

constexpr qsizetype byteDiPagina = 4096;
using Pagina = std::array<char, static_cast<size_t>(byteDiPagina)>;

// Il numero scritto, dal byte meno significativo, in un posto che chi chiama ha controllato.
template <typename Numero>
Numero numero(QByteArrayView byte, qsizetype posto)
{
    return qFromLittleEndian<Numero>(byte.data() + posto);
}

// Dove sta una riga: il primo byte è il numero nella pagina, gli altri tre la pagina.
struct Posto {
    explicit Posto(quint32 scritto) : pagina(scritto >> 8), riga(scritto & 0xff) {}
    quint32 pagina;
    quint32 riga;
};

struct RigaDiPagina {
    QByteArrayView byte;
    bool cancellata = false; // oppure riga spostata qui, che si legge dal suo posto d'origine
    bool altrove = false;    // i byte dicono dove sta
};

// Vero se il file comincia come un archivio del formato anteriore.
bool riconosce(const QString &percorso);

// Quante righe annuncia una pagina di dati; -1 se non ci starebbero.
int quanteRighe(const Pagina &pagina);
// Una riga della pagina; niente se il suo posto è fuori dalla pagina.
std::optional<RigaDiPagina> riga(const Pagina &pagina, quint32 quale);
// La tabella cui una pagina di dati appartiene; niente se la pagina non è di dati.
std::optional<quint32> proprietario(const Pagina &pagina);

class Pagine
{
public:
    // Apre il file. Fallisce con ado::Errore se non si può leggere, non è del formato, o porta una
    // password che non è quella data; un file senza password si apre.
    Pagine(const QString &percorso, const QString &password);

    // Le pagine intere del file; una coda più corta non conta.
    quint32 quante() const { return m_quante; }
    qint64 byte() const { return m_file.size(); }
    // Falso se la pagina è fuori dal file o il disco non la rende.
    bool legge(quint32 quale, Pagina &in);

private:
    void apreIntestazione(const QString &password);

    QFile m_file;
    quint32 m_quante = 0;
    quint32 m_chiave = 0;
};

} // namespace jet
