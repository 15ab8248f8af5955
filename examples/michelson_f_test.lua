-- Did Michelson measure more precisely as the summer of 1879 went on?
--
-- He timed light in five series of twenty runs. The F test asks of two samples whether one scatters
-- more than the other: it compares the ratio of their variances with what chance alone does to
-- twenty runs of one normal distribution.

local folder = arg[0]:match("^.*/") or ""
local series = {ReadColumns(folder .. "data/michelson_1879.txt")}

-- The mean of a sample and its standard deviation, with n - 1 in the denominator.
local function describe(sample)
  local sum, squares = 0, 0
  for i = 1, #sample do sum = sum + sample[i] end
  local mean = sum / #sample
  for i = 1, #sample do squares = squares + (sample[i] - mean) ^ 2 end
  return mean, math.sqrt(squares / (#sample - 1))
end

print("series  runs  mean km/s  scatter km/s")
for i = 1, #series do
  local mean, deviation = describe(series[i])
  print(string.format("%6d  %4d  %9.1f  %12.1f", i, #series[i], 299000 + mean, deviation))
end

-- FTest gives the significance: the probability that two samples of one distribution differ by at
-- least this much. The variances of two series are said to differ where it is below 0.05.
print()
print("series  F test against the first")
for i = 2, #series do
  local significance = FTest(series[1], series[i])
  local verdict = significance < 0.05 and "scatters differently" or "may scatter alike"
  print(string.format("%6d  %.4f  %s", i, significance, verdict))
end
