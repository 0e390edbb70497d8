# The critical circle under a strip footing on weightless undrained clay, worked out
# independently of KALMO.
#
#   awk -v B=2 -v SU=20 -v Q=102.83 -f ../pattern_search.awk -f footing_circle.awk
#
# The footing loads the level ground z = 0 from x = 0 to x = B with the pressure Q; the clay
# has the undrained strength SU and no weight. A circle with centre (xc, zc), zc <= 0 (z grows
# downward), and radius R cuts the ground at xc -+ a, a = sqrt(R^2 - zc^2); the arc below the
# ground subtends theta = 2 acos(-zc/R). The safety factor is the moment ratio about the centre,
#
#   F = SU R^2 theta / (Q |integral of (x - xc) dx over the loaded part inside the circle|),
#
# minimised over xc, zc and R by a pattern search that halves its steps down to 0.1 mm.
function objective(p) { return safety(p[1], p[2], p[3]) }
function safety(xc, zc, r,    a, lo, hi, theta, moment) {
  if (zc > 0 || r <= -zc + 1e-9) return 1e9
  a = sqrt(r * r - zc * zc)
  lo = xc - a; hi = xc + a
  if (lo < 0) lo = 0
  if (hi > B) hi = B
  if (hi <= lo) return 1e9
  moment = ((hi - xc) ^ 2 - (lo - xc) ^ 2) / 2
  if (moment < 0) moment = -moment
  if (moment < 1e-12) return 1e9
  theta = 2 * atan2(a, -zc)
  return SU * r * r * theta / (Q * moment)
}
BEGIN {
  circle[1] = 0; circle[2] = -B / 2; circle[3] = B
  best = minimise(circle, 3, B / 4, 1e-4)
  bx = circle[1]; bz = circle[2]; br = circle[3]
  printf "critical circle: centre x = %.4f z = %.4f, radius %.4f\n", bx, bz, br
  printf "safety factor %.5f, collapse pressure Q F = %.4f SU\n", best, Q * best / SU
}
