# The exact critical toe circle of a phi = 0 slope, worked out independently of KALMO.
#
#   awk -v H=10 -v XCREST=20 -v XTOE=25.7735 -v GAMMA=20 -v SU=38.2 \
#       -f ../pattern_search.awk -f toe_circle.awk
#   (add -v XC=25.7 -v ZC=-5 for the safety factor of the one toe circle with that centre)
#
# Ground: level at z = 0 left of XCREST, a straight slope down to the toe (XTOE, H), level at
# z = H to the right (z grows downward). For a circle through the toe with centre (xc, zc) the
# safety factor is the moment ratio about the centre,
#
#   F = SU R^2 theta / (GAMMA * integral over the sliding mass of (xc - x) dA),
#
# the slope facing the larger x, so that the mass on the crest side of the centre drives;
# theta is the angle of the arc between the points where it leaves the ground. The arc ends
# are found by bisection, the mass moment by the midpoint rule over 4000 vertical strips. The
# minimum over the centre is found on a grid of centres H/10 apart, then by a pattern search
# that halves its step down to 1 mm.
#
# A circle whose centre lies beyond the toe runs on below the level ground past the toe, and
# its sliding mass is taken to the point where it comes up again: it is then no toe circle.
# The script is thus meant for slopes whose critical toe circle has its centre on the crest
# side of the toe, as at 60 degrees (not for a vertical cut).
function zground(x) {
  if (x <= XCREST) return 0
  if (x >= XTOE) return H
  return H * (x - XCREST) / (XTOE - XCREST)
}
function objective(p) { return safety(p[1], p[2]) }
function below(x, xc, zc, r) { return zc + sqrt(r * r - (x - xc) ^ 2) - zground(x) }
function crossing(a, b, xc, zc, r,    m, k) {
  for (k = 0; k < 60; k++) {
    m = (a + b) / 2
    if ((below(a, xc, zc, r) > 0) == (below(m, xc, zc, r) > 0)) a = m; else b = m
  }
  return (a + b) / 2
}
function safety(xc, zc,    r, lo, hi, x, dx, n, i, xin, xout, moment, ain, aout, theta) {
  r = sqrt((XTOE - xc) ^ 2 + (H - zc) ^ 2)
  if (zc >= H - 0.01) return 1e9
  lo = xc - r * 0.999999; hi = xc + r * 0.999999
  # entry: first point from the left where the arc is below the ground
  dx = (hi - lo) / 1000; xin = ""; xout = ""
  if (below(lo, xc, zc, r) > 0) xin = lo
  for (x = lo; x + dx <= hi; x += dx) {
    if (xin == "" && below(x, xc, zc, r) <= 0 && below(x + dx, xc, zc, r) > 0) xin = crossing(x, x + dx, xc, zc, r)
    if (xin != "" && below(x, xc, zc, r) > 0 && below(x + dx, xc, zc, r) <= 0) { xout = crossing(x, x + dx, xc, zc, r); break }
  }
  if (xin == "" || xout == "") return 1e9
  n = 4000; dx = (xout - xin) / n; moment = 0
  for (i = 0; i < n; i++) { x = xin + (i + 0.5) * dx; moment += below(x, xc, zc, r) * (xc - x) * dx }
  if (moment <= 0) return 1e9
  ain = atan2(zground(xin) - zc, xin - xc); aout = atan2(zground(xout) - zc, xout - xc)
  theta = ain - aout; if (theta < 0) theta = -theta
  EXITX = xout
  return SU * r * r * theta / (GAMMA * moment)
}
BEGIN {
  if (XC != "") {
    printf "toe circle with centre x = %.3f z = %.3f: safety factor %.5f\n", XC, ZC, safety(XC, ZC)
    exit
  }
  best = 1e9
  for (tx = XCREST - H; tx <= XTOE + H; tx += H / 10)
    for (tz = -2 * H; tz <= H; tz += H / 10) {
      f = safety(tx, tz)
      if (f < best) { best = f; bestx = tx; bestz = tz }
    }
  centre[1] = bestx; centre[2] = bestz
  best = minimise(centre, 2, 2, 0.001)
  bestx = centre[1]; bestz = centre[2]
  f = safety(bestx, bestz)
  printf "critical toe circle: centre x = %.3f z = %.3f, radius %.3f, exit x = %.3f\n", bestx, bestz, sqrt((XTOE - bestx) ^ 2 + (H - bestz) ^ 2), EXITX
  printf "safety factor %.4f, stability number SU/(F GAMMA H) = %.4f\n", best, SU / (best * GAMMA * H)
}
