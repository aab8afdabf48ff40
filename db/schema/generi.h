#pragma once

// I generi che il programma conosce per nome: codici di Traduzioni.
namespace modTarvola
{

enum Genere {
    Marito = 6,
    Moglie = 7,
    FamigliaConiuge = 8,
    RegistroBattesimi = 9,
    RegistroMatrimoni = 10,
    RegistroMorti = 11,
    Nota = 12,
    TestoRiportato = 13,
    FileAllegato = 14,
    Nascita = 20,
    Battesimo = 21,
    Morte = 26,
    Sepoltura = 27,
    Padrino = 34,
    FamigliaGenitori = 35,
    Padre = 36,
    Madre = 37,
    Contatto = 41,
    Trascrittore = 42,
    Indirizzo = 43,
    Recapito = 44
};

// Le categorie di Traduzioni.Tipo: in quale finestra un genere si può inserire.
enum Categoria {
    NessunaCategoria = 0,
    CategoriaArchivio = 1,
    CategoriaRegistro = 2,
    CategoriaBattesimo = 4,
    CategoriaMatrimonio = 8,
    CategoriaMorte = 16,
    CategoriaIndividuo = 256,
    CategoriaFamiglia = 512,
    CategoriaEvento = 1024,
    CategoriaOperatore = 2048,
    CategoriaRecapiti = 4096
};

// Il ruolo di una persona in una voce o in una famiglia.
constexpr bool eIndividuo(int genere)
{
    return (genere >= 1 && genere <= 7) || genere == 34 || genere == 36 || genere == 37 ||
           genere == 40;
}

// I ruoli della coppia: i primi in una famiglia di coniugi, gli altri in quella dei genitori.
constexpr bool eConiuge(int genere)
{
    return genere == Marito || genere == Moglie;
}

constexpr bool eGenitore(int genere)
{
    return genere == Padre || genere == Madre;
}

constexpr bool eRuoloDiCoppia(int genere)
{
    return eConiuge(genere) || eGenitore(genere);
}

constexpr bool eFamiglia(int genere)
{
    return genere == FamigliaConiuge || genere == FamigliaGenitori;
}

constexpr bool eEventoDiIndividuo(int genere)
{
    return (genere >= 20 && genere <= 33) || genere == 38 || genere == 39 || genere == 46 ||
           genere == 47;
}

constexpr bool eEventoDiFamiglia(int genere)
{
    return genere == 18 || genere == 19 || genere == 39;
}

} // namespace modTarvola
