// The areas in the order in which they run, one TARN_GOLDEN_AREA(Name) each; read more than once.
TARN_GOLDEN_AREA(Special)
TARN_GOLDEN_AREA(Sorting)
TARN_GOLDEN_AREA(Products)
TARN_GOLDEN_AREA(Decompositions)
TARN_GOLDEN_AREA(Solvers)
TARN_GOLDEN_AREA(TFunc)
TARN_GOLDEN_AREA(Optim)
TARN_GOLDEN_AREA(Stat)
