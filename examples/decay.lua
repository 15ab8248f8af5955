-- A decay measured with a counter: how much, how fast, over which background?
--
-- Sixty counts, each over one second, of a source of 500 decays a second and a mean life of 8
-- seconds over a background of 20 a second. Chi-square is minimised over all three; its curvature
-- gives the errors. Then one count is spoiled, and amplitude and background are fitted again, by
-- least squares and by the two likelihoods that bear outliers.

local times, counts = {}, {}
for i = 1, 60 do
  times[i] = i - 0.5
  counts[i] = RandPoisson(500 * math.exp(-times[i] / 8) + 20)
end

local function model(t, p) return p[1] * math.exp(-t / p[2]) + p[3] end
local function chi2(p)
  local sum = 0
  for i = 1, #times do
    local expected = model(times[i], p)
    sum = sum + (counts[i] - expected) ^ 2 / expected
  end
  return sum
end

local fit = Minimise{f = chi2, bounds = {{1, 5000}, {1, 100}, {1, 200}}, start = {200, 20, 50}}
print("            amplitude    mean life   background")
print(string.format("fitted    %7.1f      %7.3f      %7.2f", table.unpack(fit.point:table())))
print(string.format("error     %7.1f      %7.3f      %7.2f", table.unpack(fit.errors:table())))
print(string.format("chi-square %.1f for 57 degrees of freedom: %.0f %% of such fits are worse",
                    fit.value, 100 * Gamma_Q(57 / 2, fit.value / 2)))

local residuals, errors = {}, {}
for i = 1, #times do
  residuals[i] = counts[i] - model(times[i], fit.point)
  errors[i] = math.sqrt(model(times[i], fit.point))
end
Plot{x = times, y = residuals, errors = errors, title = "Counts less the fit",
     xlabel = "seconds", file = arg[1]}

-- A spark in the counter. With the mean life known, the model is linear in the other two.
counts[30] = counts[30] + 150
local basis = {function(t) return math.exp(-t / 8) end, function() return 1 end}
print("\nwith one count spoiled       amplitude       background")
for _, how in ipairs{{"plain"}, {"refined", "inverse_square"}, {"refined", "Jeffreys"}} do
  local variances = {}
  for i = 1, #counts do variances[i] = 500 * math.exp(-times[i] / 8) + 20 end
  local line = FitLine{basis = basis, x = times, y = counts, variances = variances,
                       mode = how[1], prior = how[2]}
  local a, e = line.coefficients, line.errors
  print(string.format("%-8s%-16s %6.1f +- %4.1f   %6.2f +- %4.2f", how[1], how[2] or "", a[1], e[1],
                      a[2], e[2]))
end
