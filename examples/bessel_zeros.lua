-- Checks a published table: zeros of Bessel functions, and the slopes there.
--
-- Abramowitz and Stegun print ten decimals. At each printed zero J must vanish to that accuracy,
-- BesselJpn must agree with the printed slope, and two functions that the table does not know,
-- Y and its derivative, must obey J Y' - J' Y = 2 / (pi x).

local folder = arg[0]:match("^.*/") or ""
local orders, numbers, zeros, slopes = ReadColumns(folder .. "data/bessel_zeros.csv")

local HALF_A_DIGIT = 0.5e-10

-- Newton's method: the next approximation of a zero.
local function refine(order, x)
  return x - BesselJn(order, x) / BesselJpn(order, x)
end

local function wronskian(order, x)
  return BesselJn(order, x) * BesselYpn(order, x) - BesselJpn(order, x) * BesselYn(order, x)
end

local worst = {zero = 0, slope = 0, wronskian = 0}
local function note(what, difference)
  worst[what] = math.max(worst[what], math.abs(difference))
end

for i = 1, #zeros do
  local order, zero = orders[i], zeros[i]
  note("zero", refine(order, zero) - zero)
  note("slope", BesselJpn(order, zero) - slopes[i])
  note("wronskian", wronskian(order, zero) * math.pi * zero / 2 - 1)
  if numbers[i] <= 3 then
    print(string.format("J%d  zero %d  %.10f  slope %13.10f", order, numbers[i],
                        refine(order, zero), BesselJpn(order, zero)))
  end
end

local function verdict(what, limit, text)
  print(string.format("%-40s %s", text, worst[what] <= limit and "yes" or "NO"))
end

print()
print(#zeros .. " zeros checked")
-- The slopes are compared at printed zeros, whose rounding adds a little to their own.
verdict("zero", HALF_A_DIGIT, "zeros right to the last printed digit?")
verdict("slope", 2 * HALF_A_DIGIT, "slopes right to the last printed digit?")
verdict("wronskian", 1e-12, "J Y' - J' Y = 2/(pi x)?")
