target_sources(
  tarvola_dati
  PRIVATE db/codici.cpp
          db/codici.h
          db/collegamenti.cpp
          db/collegamenti.h
          db/connessioni.cpp
          db/connessioni.h
          db/elenco.cpp
          db/elenco.h
          db/eliminazione.cpp
          db/eliminazione.h
          db/generi.h
          db/modello.cpp
          db/modello.h
          db/schema.cpp
          db/schema.h)
