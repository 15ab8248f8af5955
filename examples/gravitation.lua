-- Sixteen laboratories weighed the Earth, and their answers do not fit together. What is G?
--
-- The mean weighted by the stated errors trusts these errors. Its chi-square says that it should
-- not: something is left out of them. Under the limited Jeffreys prior the measurements share an
-- unknown dispersion on top of what each laboratory states; the weights even out and the error of
-- the mean grows.

local folder = arg[0]:match("^.*/") or ""
local values, errors = ReadColumns(folder .. "data/gravitation.txt")

local dispersions = {}
for i = 1, #errors do dispersions[i] = errors[i] ^ 2 end

local function combine(prior)
  return Stat{values = values, dispersions = dispersions, mean_type = prior}
end
local weighted, limited = combine("weighted"), combine("limited Jeffreys")

local chi2 = 0
for i = 1, #values do chi2 = chi2 + (values[i] - weighted.Mean) ^ 2 / dispersions[i] end
print(string.format("%d measurements, chi-square about their weighted mean %.0f", #values, chi2))
print(string.format("chance of so much or more: %.1e", Gamma_Q((#values - 1) / 2, chi2 / 2)))

print("\n                        G       error   extra scatter   (1e-11 m^3 kg^-1 s^-2)")
for _, row in ipairs{{"weighted mean", weighted}, {"limited Jeffreys", limited}} do
  local name, s = row[1], row[2]
  print(string.format("%-18s %9.6f  %9.6f  %9.6f", name, s.Mean, math.sqrt(s.SEM2),
                      math.sqrt(s.Disp0)))
end
print(string.format("%-18s %9.6f  %9.6f", "CODATA 2018", 6.67430, 0.00015))

local numbers = {}
for i = 1, #values do numbers[i] = i end
local mean = {x = {1, #values}, y = {limited.Mean, limited.Mean}, label = "limited Jeffreys"}
Plot{curves = {{x = numbers, y = values, errors = errors}, mean}, title = "Measurements of G",
     xrange = {0, #values + 1}, file = arg[1]}
