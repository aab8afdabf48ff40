# Dove c'è ccache, ricompilare ciò che non è cambiato non costa nulla.
find_program(TARVOLA_CCACHE ccache)
mark_as_advanced(TARVOLA_CCACHE)
if(TARVOLA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${TARVOLA_CCACHE})
endif()
