-- Do the alpha particles of polonium come independently of each other?
--
-- Rutherford and Geiger counted them in 2608 intervals of 7.5 seconds. If atoms decay at random, the
-- counts follow Poisson's law; chi-square measures how far they are from it.

local folder = arg[0]:match("^.*/") or ""
local particles, intervals = ReadColumns(folder .. "data/rutherford_geiger_1910.txt")

-- The mean count estimates the one parameter of the law.
local total, events = 0, 0
for i = 1, #intervals do
  total = total + intervals[i]
  events = events + particles[i] * intervals[i]
end
local mean = events / total
print(string.format("%d particles in %d intervals: %.4f each", events, total, mean))

-- ln k! is LnGamma(k + 1): through logarithms nothing overflows.
local function poisson(k)
  return math.exp(k * math.log(mean) - mean - LnGamma(k + 1))
end

-- Chi-square wants some five expected events in every cell, so the last cell takes all intervals
-- with eleven particles or more.
local LAST = 11
print()
print("particles  observed  expected")
local chi2, left, expectedLeft = 0, total, total
for i = 1, LAST + 1 do
  local k = particles[i]
  local observed = k < LAST and intervals[i] or left
  local expected = k < LAST and total * poisson(k) or expectedLeft
  left, expectedLeft = left - observed, expectedLeft - expected
  chi2 = chi2 + (observed - expected) ^ 2 / expected
  print(string.format("%8d%s  %8d  %8.1f", k, k < LAST and " " or "+", observed, expected))
end

-- Cells, less one for the total and one for the mean, are the degrees of freedom.
local degrees = LAST + 1 - 2
local significance = 1 - ProbChi2(degrees, chi2)
print()
print(string.format("chi-square %.2f with %d degrees of freedom", chi2, degrees))
print(string.format("chance alone does worse in %.0f%% of such experiments", 100 * significance))
