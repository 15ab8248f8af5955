-- Seven counts, of which three are expected from the background: how strong is the source?
--
-- The probability of a strength s, given n counts and a background b, is proportional to
-- (s + b)^n exp(-(s + b)) for s >= 0 when all strengths count as equally likely beforehand (Helene,
-- Nuclear Instruments and Methods 212 (1983) 319). Tabulated, it is a function to work with.

local n, b = 7, 3

local strengths, logarithms = {}, {}
for i = 0, 4000 do
  local s = i / 100
  strengths[i + 1] = s
  logarithms[i + 1] = n * math.log(s + b) - (s + b)
end
local logarithm = TFunc(strengths, logarithms)

-- The integral of the exponential may be beyond the range of numbers; its logarithm never is.
local posterior = (logarithm - logarithm:LogIntegralExp()):Map(math.exp)
print(string.format("integral          %.9f", posterior:Integral().Y[#strengths]))
-- Exactly, the integral from 0 on is n! Q(n + 1, b), where Q is the upper incomplete gamma function.
print(string.format("exact height at 4 %.6f", (4 + b) ^ n * math.exp(-(4 + b) - LnGamma(n + 1)) /
                    Gamma_Q(n + 1, b)))
print(string.format("tabulated         %.6f", posterior(4)))

local best = posterior:Maximum()
local cumulative = posterior:Integral()
local function quantile(p) return (cumulative - p):Zeros()[1] end
print(string.format("\nmost probable     %.2f", best.x))
print(string.format("median            %.2f", quantile(0.5)))
print(string.format("68 %% interval     %.2f to %.2f", quantile(0.16), quantile(0.84)))
print(string.format("90 %% upper limit  %.2f", quantile(0.9)))

local low, high = quantile(0.16), quantile(0.84)
Plot{curves = {{f = posterior, label = "posterior"},
               {x = {low, low}, y = {0, posterior(low)}, label = "68 %"},
               {x = {high, high}, y = {0, posterior(high)}}},
     title = "Strength of a source, 7 counts over a background of 3", xlabel = "strength",
     xrange = {0, 20}, file = arg[1]}
