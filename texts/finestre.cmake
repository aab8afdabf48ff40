target_sources(
  tarvola_finestre
  PRIVATE texts/allegati.cpp texts/allegati.h texts/fmTxtL.cpp texts/fmTxtL.h texts/ortografia.cpp texts/ortografia.h
          texts/testi.cpp texts/testi.h)
