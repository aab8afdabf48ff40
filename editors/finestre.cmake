target_sources(
  tarvola_finestre
  PRIVATE editors/caselle.cpp
          editors/caselle.h
          editors/editori.cpp
          editors/editori.h
          editors/eliminazione.cpp
          editors/eliminazione.h
          editors/fmArchivio.cpp
          editors/fmArchivio.h
          editors/fmEditor.cpp
          editors/fmEditor.h
          editors/fmEvento.cpp
          editors/fmEvento.h
          editors/fmFamiglia.cpp
          editors/fmFamiglia.h
          editors/fmIndividuo.cpp
          editors/fmIndividuo.h
          editors/fmLuogo.cpp
          editors/fmLuogo.h
          editors/fmOperatore.cpp
          editors/fmOperatore.h
          editors/fmRecapito.cpp
          editors/fmRecapito.h
          editors/fmRegistro.cpp
          editors/fmRegistro.h
          editors/fmVoce.cpp
          editors/fmVoce.h
          editors/icone_generi.cpp
          editors/icone_generi.h
          editors/pannello.cpp
          editors/pannello.h)

# Ogni editore ha una sua descrizione(): riuniti in un sorgente solo si confonderebbero.
get_target_property(sorgenti tarvola_finestre SOURCES)
list(FILTER sorgenti INCLUDE REGEX "editors/fm[A-Z].*[.]cpp$")
set_source_files_properties(${sorgenti} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
