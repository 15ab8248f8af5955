-- Five equations that are nearly three: what can still be said about the unknowns?
--
-- The rows are heights of three smooth curves at five close points, so that the matrix nearly loses
-- its rank. The right-hand side belongs to known unknowns, all 1, and then gets an error of one
-- part in a million, as a measurement would.
--
-- Elimination and the pseudo-inverse answer the equations to the letter and multiply the error by a
-- million: no singular value is zero, so the pseudo-inverse leaves none out. The regularised answer
-- minimises |Ax - b|^2 + h |x|^2, the root of h being lambda times the largest singular value, and
-- gives up what the equations cannot tell.

local rows, b = {}, {}
for i = 1, 5 do
  rows[i] = {}
  local x = 1 + i / 100
  for j = 1, 5 do rows[i][j] = x ^ (j - 1) end
end
local a = Matrix(rows)
local truth = MVector{1, 1, 1, 1, 1}
local exact = a * truth
for i = 1, 5 do b[i] = exact[i] * (1 + 1e-6 * (-1) ^ i) end

local singular = a:SingularValues()
print(string.format("singular values  %.2e  %.2e  %.2e  %.2e  %.2e", table.unpack(singular:table())))
print(string.format("determinant      %.2e, its logarithm %.2f", a:Determinant(), a:LogAbsDeterminant()))

local function report(name, x)
  local residual = (a * x - MVector(b)):Norm()
  print(string.format("%-26s %11.3f %11.3f %11.3f   %.1e", name, x[1], x[2], x[3], residual))
end
print("\nthe first three unknowns, all of them 1 in truth            residual")
report("exact right-hand side", a:Solve(exact))
report("solved", a:Solve(b))
report("pseudo-inverse", a:PseudoInverse() * MVector(b))
for _, lambda in ipairs{1e-8, 1e-4, 1e-2} do
  report(string.format("regularised, lambda %.0e", lambda), a:SolveRegularised(b, lambda))
end
