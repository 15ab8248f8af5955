-- How fast did Michelson find light to be in 1879, and how far can the figure be trusted?
--
-- He timed light in five series of twenty runs. One mean over all runs is the naive answer. The
-- series scatter about each other by more than their own errors explain; the intrinsic dispersion
-- that is left over depends little on what is believed about it beforehand, its prior.

local folder = arg[0]:match("^.*/") or ""
local columns = {ReadColumns(folder .. "data/michelson_1879.txt")}

local runs, means, dispersions = {}, {}, {}
for i, column in ipairs(columns) do
  for j = 1, #column do runs[#runs + 1] = 299000 + column[j] end
  local series = Stat{values = column}
  means[i], dispersions[i] = 299000 + series.Mean, series.SEM2
end

local all = Stat{values = runs}
local median = all:MedianSD()
print(string.format("all runs     mean %.1f +- %.1f km/s", all.Mean, math.sqrt(all.SEM2)))
print(string.format("             median %.1f +- %.1f km/s", median.median, median.error))
print(string.format("             scatter of one run %.0f km/s", math.sqrt(all.Disp)))

print("\nfive series as five measurements with errors")
print("prior              mean   error   intrinsic scatter, km/s")
for _, prior in ipairs{"limited Jeffreys", "Jeffreys", "uniform", "weighted"} do
  local s = Stat{values = means, dispersions = dispersions, mean_type = prior}
  print(string.format("%-16s %8.1f  %5.1f  %5.1f", prior, s.Mean, math.sqrt(s.SEM2),
                      math.sqrt(s.Disp0)))
end

-- The location that makes the series most probable once the intrinsic scatter is averaged over.
local series = Stat{values = means, dispersions = dispersions}
local best = series:MostProbableValue{prior = "limited Jeffreys"}
print(string.format("\nmost probable value %.1f +- %.1f km/s", best.value, best.error))
local today = 299792.458 / 1.00028  -- over the refractive index of air
print(string.format("today's value in air, %.1f, is %.1f errors away", today,
                    (best.value - today) / best.error))

local curve = series:LogProbability{prior = "limited Jeffreys", points = 200}
for i = 1, #curve.Y do curve.Y[i] = math.exp(curve.Y[i]) end
Plot{f = curve, title = "Probability of the speed of light, 1879", xlabel = "km/s",
     ylabel = "relative probability", file = arg[1]}
