#pragma once

#include "platform/anteriore/jet_pagine.h"

#include <QList>
#include <QString>

#include <vector>

// Il catalogo di un archivio del formato anteriore e la forma delle sue tabelle.
namespace jet
{

enum class Tipo : quint8 {
    Booleano = 1,
    Byte = 2,
    Intero = 3,
    Lungo = 4,
    Doppio = 7,
    Data = 8,
    Testo = 10,
    Ole = 11,
    Nota = 12
};

struct Colonna {
    QString nome;
    Tipo tipo = Tipo::Testo; // anche un valore che l'elenco non ha: allora non si sa leggere
    quint16 numero = 0;
    bool fissa = false;
    qsizetype posto = 0;     // fra i byte delle colonne fisse, o fra le variabili
    qsizetype lunghezza = 0; // byte, se fissa
};

struct Tabella {
    QString nome;
    quint32 definizione = 0;
    quint32 righe = 0; // annunciate
    int colonneMassime = 0;
    int variabili = 0;
    quint32 mappa = 0; // dove sta la mappa delle pagine
    QList<Colonna> colonne;

    // La colonna col nome dato, maiuscole e minuscole alla pari; nulla se non c'è.
    const Colonna *colonna(const QString &cercata) const;
};

// Le pagine di dati di una tabella. Se la mappa non si può leggere tutta si cercano in tutto il
// file, e `mappaIntera` è falso.
struct PagineDiTabella {
    std::vector<quint32> pagine;
    bool mappaIntera = true;
};
PagineDiTabella pagineDi(Pagine &pagine, const Tabella &tabella);

class Catalogo
{
public:
    // Legge il catalogo; fallisce con ado::Errore se non vi si capisce nulla.
    explicit Catalogo(Pagine &pagine);

    // I nomi delle tabelle, senza quelle di servizio.
    QStringList nomi() const;
    // La forma di una tabella, il cui nome si cerca senza badare alle maiuscole. Fallisce con
    // ado::Errore se non c'è o non si può leggere.
    Tabella tabella(const QString &nome) const;
    // Vero se le righe lette del catalogo sono quante ne annuncia.
    bool intero() const { return m_intero; }

private:
    struct Voce {
        QString nome;
        quint32 definizione;
    };
    Pagine &m_pagine;
    QList<Voce> m_voci;
    bool m_intero = true;
};

} // namespace jet
