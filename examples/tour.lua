-- A walk through all families of functions. help() lists them, help("Beta_I") tells about one.

local function heading(text) print("\n-- " .. text) end
local function line(text, ...) print(string.format("%-34s" .. text, ...)) end

heading("A number gives a number, an array an array, a tabulated function one of the same x")
line("%.6f", "J0(1)", BesselJ0(1))
local values = BesselJ0({0, 1, 2})
line("%.4f %.4f %.4f", "J0 of 0, 1, 2", values[1], values[2], values[3])
local logarithms = LnGamma(TFunc({1, 2, 3}, {4, 5, 6}))
line("%g %.4f", "ln Gamma over 3: x and y", logarithms.X[3], logarithms.Y[3])

heading("Bessel functions: any order, derivatives, logarithms; the order comes first")
line("%.6f", "J of order 2 at 3", BesselJn(2, 3))
line("%.6f", "J of order 1/2 at 3", BesselJn(0.5, 3))
line("%.6f", "its derivative", BesselJpn(0.5, 3))
line("%.6f", "Y of order 2 at 3", BesselYn(2, 3))
line("%.6f", "I of order 3/2 at 2", BesselIn(1.5, 2))
line("%.6f", "K of order 3/2 at 2", BesselKn(1.5, 2))
line("%.3f", "ln I of order 2 at 5000", LnBesselIn(2, 5000))

heading("Gamma and beta functions, whole and incomplete")
line("%.6f", "ln Gamma(10.5)", LnGamma(10.5))
line("%.6f", "P(3, 2)", Gamma_P(3, 2))
line("%.3f", "ln Q(3, 1000), which underflows", LnGamma_Q(3, 1000))
line("%.6f", "B(2, 3)", Beta(2, 3))
line("%.6f", "I of 0.4 (2, 3)", Beta_I(2, 3, 0.4))

heading("Tests: is chi-square 18.3 large for 10 degrees of freedom? Do variances differ?")
line("%.4f", "probability of more", 1 - ProbChi2(10, 18.3))
line("%.4f", "significance of the F test", FTest({1, 2, 3, 4, 5}, {2, 4, 6, 8, 11}))

heading("Error functions; the density of a normal distribution over its upper tail")
line("%.6f", "erf(1/2)", Errf(0.5))
line("%.6f", "erfc(2)", CErrf(2))
line("%.4f", "ln erfc(30), which underflows", LnCErrf(30))
line("%.6f", "Psi(2), which is not digamma", Psi(2))
line("%.6f", "sin(1/2) / (1/2)", Sinc(0.5))

heading("Random numbers: the same for the same --seed; averages of 10000")
local function average(draw)
  local sum = 0
  for _ = 1, 10000 do sum = sum + draw() end
  return sum / 10000
end
line("%.0f", "normal of mean 100, sigma 5", average(function() return RandGauss(100, 5) end))
line("%.0f", "Poisson of mean 50", average(function() return RandPoisson(50) end))
line("%.0f", "successes, 40 trials of 1/4", average(function() return RandBinominal(0.25, 40) end))

heading("An error can be caught; it has a number, a name and a message")
local succeeded, problem = pcall(BesselJn, 0.5, -1)
print(succeeded, problem.number, problem.name)
