#pragma once

#include <QString>

#include <vector>

// Gli atti della dimostrazione, come stanno in atti.json. Le date sono AAAA-MM-GG; generi, ruoli e
// tipi sono le etichette che si leggono nelle finestre; ciò che un atto non dice è vuoto.
namespace esempi
{

struct Famiglia;

struct Evento {
    QString tipo;
    QString valore;
    QString luogo;
    QString data;
};

struct Individuo {
    QString ruolo;
    QString precisazione;
    QString nome;
    QString cognome;
    QString eta;
    QString sesso; // "M", "F" o vuoto
    std::vector<Evento> eventi;
    std::vector<Famiglia> famiglie;
};

struct Famiglia {
    QString tipo;
    std::vector<Individuo> membri;
    std::vector<Evento> eventi;
};

struct Atto {
    QString volume;
    QString pagina;
    QString numero; // quello che l'atto porta nel registro
    QString data;
    std::vector<Individuo> persone;
    QString titolo; // come lo si chiama; non sta nel registro
    QString testo;
    QString traduzione; // di un testo latino, in una nota
};

struct Registro {
    QString titolo;
    QString tipo;
    QString periodo;
    QString dataIniziale;
    QString dataFinale;
    QString supporto;
    std::vector<Atto> atti;
};

struct Archivio {
    QString nome;
    QString abbreviato;
    QString gruppo;
    std::vector<Registro> registri;
};

// Legge gli atti. Lancia std::runtime_error se il file ha una chiave che non si conosce o una
// parte che manca.
std::vector<Archivio> leggi();

// Una data AAAA-MM-GG come la scriverebbe un trascrittore; `volta` sceglie fra i modi possibili.
QString scritturaData(const QString &data, int volta);

// Quanti individui, famiglie ed eventi ha un atto.
struct Conto {
    int individui = 0;
    int famiglie = 0;
    int eventi = 0;
};
Conto conta(const std::vector<Individuo> &persone);

} // namespace esempi
