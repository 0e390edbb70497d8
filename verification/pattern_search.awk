# Pattern search shared by the independent checks of the verification problems.
#
# minimise(p, n, step, smallest) moves the n parameters p[1..n] one at a time by +-step while
# that lowers objective(p), halves the step when no move helps, and stops below the step
# smallest. The script that loads this file after it defines objective(p). Returns the least
# objective found; p holds its parameters.
function minimise(p, n, step, smallest,    best, f, i, sign, moved) {
  best = objective(p)
  for (; step >= smallest; step /= 2) {
    moved = 1
    while (moved) {
      moved = 0
      for (i = 1; i <= n; i++)
        for (sign = -1; sign <= 1; sign += 2) {
          p[i] += sign * step
          f = objective(p)
          if (f < best) { best = f; moved = 1 } else p[i] -= sign * step
        }
    }
  }
  return best
}
