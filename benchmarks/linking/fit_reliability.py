#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tourwright developers
# SPDX-License-Identifier: MIT
"""Fits the reliability of poses to evidence with known truth: from pictures alone, with --ranges metric ones,
with --one-sided those that have range on one side only.

Usage: bench_evidence --pictures-alone SET... > evidence.csv; fit_reliability.py evidence.csv
       the same with --without-walls: the weights of pictures that show no walls
       bench_evidence SET... > evidence.csv; fit_reliability.py --ranges evidence.csv
       bench_evidence --one-sided SET... > evidence.csv; fit_reliability.py --one-sided evidence.csv

Logistic regression with a ridge on the features below, which nexomap/src/pair/Reliability.cpp computes alike.
Prints the table of weights for that file and, leaving out one set at a time, how stated and true reliability
compare on sets that the fit did not see. Weights whose sign would contradict their meaning (more support must
not make a pose less likely) are held at zero.
"""
import csv
import math
import sys

def walls(r):
    """How much likelier a right pose is than a wrong one to lay the walls onto each other as well as this, as a
    logarithm; 0 where either picture shows none."""
    off = float(r["skew_deg"])
    if off < 0.0:
        return 0.0
    square = 2.0 / (0.7 * math.sqrt(2.0 * math.pi)) * math.exp(-0.5 * (off / 0.7) ** 2)
    return math.log(45.0 * (0.8 * square + (0.12 / 8.0 if off < 8.0 else 0.0) + 0.08 / 45.0))


def held_without(r):
    """Weights that are not fitted: made-up buildings have no stairs, and few cameras that lean."""
    lean = float(r["lean_deg"])
    elevation = max(0.0, abs(float(r["elevation_deg"])) - 0.5 * lean)
    return -1.5 * min(max(0.0, elevation - 1.5), 3.0) - 0.3 * max(0.0, lean - 3.0)


# name, value of a row, sign that the weight must have
FEATURES = [
    ("log of the inliers", lambda r: math.log(min(float(r["inliers"]), 150.0)), 1),
    ("occupied cells", lambda r: min(float(r["cells"]), 14.0), 1),
    ("log of those outside the densest 25 degrees", lambda r: math.log1p(min(float(r["outside"]), 100.0)), 1),
    ("inlier share", lambda r: min(float(r["inlier_share"]), 0.5), 1),
    ("second pose's share", lambda r: float(r["second_share"]), -1),
    ("log of the direction's deviation", lambda r: math.log(max(0.03, min(float(r["direction_sigma_deg"]), 3.0))), -1),
    ("walls laid onto each other", walls, 1),
]
FEWEST = 12  # inliers; a pose with fewer is not believed
FEWEST_RANGED = 5.0  # the same with ranges, of the support
WRONG = 1.0  # how often a wrong pose counts


def support(r):
    return max(float(r["inliers"]), 0.5 * float(r["guided"]) - 2.0 * float(r["chance"]))


def mute(r):
    """Of the places that both must show, the silent share beyond what right poses have."""
    return max(0.0, float(r["silent_share"]) - 0.3) if int(r["silent_places"]) >= 8 else 0.0


RANGE_FEATURES = [
    ("log of the support", lambda r: math.log(max(3.0, min(support(r), 60.0))), 1),
    ("occupied cells", lambda r: min(float(r["cells"]), 8.0), 1),
    ("log of the square metres seen through", lambda r: math.log(0.05 + min(float(r["walls_moved_m2"]), 10.0)), -1),
    ("silent places beyond 0.3", mute, -1),
    ("second pose's share", lambda r: min(1.0, float(r["second_share"]) * float(r["inliers"]) / max(1.0, support(r))), -1),
    ("whitened residual beyond 2", lambda r: max(0.0, min(float(r["rms"]), 8.0) - 2.0), -1),
    ("lean beyond 2 degrees", lambda r: max(0.0, min(float(r["lean_deg"]), 8.0) - 2.0), -1),
    ("another level", lambda r: 1.0 if abs(float(r["floor_step_m"])) > 0.15 else 0.0, -1),
]


def silence(r):
    """Of the places that the panorama without range must show, the silent share beyond what right poses have.
    Two that speak are added, so that one place alone says little."""
    places = float(r["sight_places"])
    return max(0.0, float(r["sight_silent"]) * places / (places + 2.0) - 0.2)


ONE_SIDED_FEATURES = [
    ("log of the support", lambda r: math.log(max(8.0, min(support(r), 80.0))), 1),
    ("occupied cells", lambda r: min(float(r["cells"]), 8.0), 1),
    ("log of those outside the densest 25 degrees", lambda r: math.log1p(min(float(r["outside"]), 100.0)), 1),
    ("share of sight lines through surfaces", lambda r: min(float(r["crossed"]), 0.5), -1),
    ("silent places beyond a fifth", silence, -1),
    ("second pose's share", lambda r: min(1.0, float(r["second_share"]) * float(r["inliers"]) / max(1.0, support(r))), -1),
    ("whitened residual beyond 1.5", lambda r: max(0.0, min(float(r["rms"]), 4.0) - 1.5), -1),
    ("log of the position's deviation", lambda r: math.log(max(0.003, min(float(r["position_sigma_m"]), 0.3))), -1),
    ("lean beyond 3 degrees", lambda r: max(0.0, min(float(r["lean_deg"]), 10.0) - 3.0), -1),
]


def judged_one_sided(r):
    return r["metric"] == "1" and int(r["inliers"]) >= 8 and support(r) >= 8.0


def judged_with_ranges(r):
    return r["metric"] == "1" and int(r["inliers"]) >= 5 and support(r) >= FEWEST_RANGED and int(r["samples"]) >= 200


def judged_without(r):
    return r["metric"] == "0" and r["rotation_only"] == "0" and int(r["inliers"]) >= FEWEST


def solve(matrix, right):
    """Gauss elimination with pivoting."""
    rows = [list(line) + [value] for line, value in zip(matrix, right)]
    size = len(rows)
    for k in range(size):
        pivot = max(range(k, size), key=lambda i: abs(rows[i][k]))
        rows[k], rows[pivot] = rows[pivot], rows[k]
        for i in range(size):
            if i != k:
                share = rows[i][k] / rows[k][k]
                rows[i] = [u - share * v for u, v in zip(rows[i], rows[k])]
    return [rows[k][size] / rows[k][k] for k in range(size)]


def logistic(z):
    return 1.0 / (1.0 + math.exp(-max(-30.0, min(30.0, z))))


def newton(x, y, held, used, ridge):
    """Weights of the used features, the constant last."""
    columns = list(used) + [len(FEATURES)]
    w = [0.0] * (len(FEATURES) + 1)
    for _ in range(40):
        gradient = [ridge * w[k] if k < len(FEATURES) else 0.0 for k in columns]
        hessian = [[(ridge if a == b and a < len(FEATURES) else 1e-9 * (a == b)) for b in columns] for a in columns]
        for row, target, fixed in zip(x, y, held):
            values = [row[k] if k < len(FEATURES) else 1.0 for k in columns]
            p = logistic(fixed + sum(w[k] * v for k, v in zip(columns, values)))
            count = 1.0 if target else WRONG
            for a, u in enumerate(values):
                gradient[a] += count * (p - target) * u
                for b, v in enumerate(values):
                    hessian[a][b] += count * p * (1.0 - p) * u * v
        step = solve(hessian, gradient)
        for k, s in zip(columns, step):
            w[k] -= s
        if max(abs(s) for s in step) < 1e-8:
            break
    return w


def fit(x, y, held, ridge=0.5):
    """Weights of the plain features, and the constant, beside what is held of each row."""
    count = len(FEATURES)
    mean = [sum(row[k] for row in x) / len(x) for k in range(count)]
    spread = [math.sqrt(sum((row[k] - mean[k]) ** 2 for row in x) / len(x)) + 1e-9 for k in range(count)]
    scaled = [[(row[k] - mean[k]) / spread[k] for k in range(count)] for row in x]
    used = list(range(count))
    while True:
        w = newton(scaled, y, held, used, ridge)
        against = [k for k in used if w[k] * FEATURES[k][2] < 0.0]
        if not against:
            break
        used.remove(max(against, key=lambda k: abs(w[k])))
    plain = [w[k] / spread[k] for k in range(count)]
    return plain, w[count] - sum(p * m for p, m in zip(plain, mean))


def stated(row, fixed, fitted):
    weights, constant = fitted
    return logistic(fixed + sum(w * v for w, v in zip(weights, row)) + constant)


def calibration(p, y, bins=10):
    error, lines = 0.0, []
    for b in range(bins):
        here = [k for k in range(len(p)) if min(int(p[k] * bins), bins - 1) == b]
        if here:
            said, true = sum(p[k] for k in here), sum(y[k] for k in here)
            lines.append(f"  {said / len(here):.3f} stated, {true / len(here):.3f} true, {len(here)} pairs")
            error += abs(said - true)
    return error / len(p), lines


def main():
    global FEATURES, WRONG
    paths = [path for path in sys.argv[1:] if path not in ("--ranges", "--one-sided", "--without-walls")]
    if not paths:
        sys.exit(__doc__)
    judged, held_of = judged_without, held_without
    if "--without-walls" in sys.argv:
        FEATURES = [f for f in FEATURES if f[1] is not walls]
    if "--ranges" in sys.argv:
        FEATURES, judged, WRONG, held_of = RANGE_FEATURES, judged_with_ranges, 3.0, lambda r: 0.0
    if "--one-sided" in sys.argv:
        FEATURES, judged, held_of = ONE_SIDED_FEATURES, judged_one_sided, lambda r: 0.0
    rows = []
    for path in paths:
        with open(path, encoding="utf-8") as file:
            rows += [r for r in csv.DictReader(file) if r["set"] != "set" and judged(r)]
    x = [[f[1](r) for f in FEATURES] for r in rows]
    y = [float(r["right"]) for r in rows]
    held = [held_of(r) for r in rows]
    sets = [r["set"] for r in rows]
    p = [0.0] * len(y)
    for name in sorted(set(sets)):
        others = [k for k, s in enumerate(sets) if s != name]
        fitted = fit([x[k] for k in others], [y[k] for k in others], [held[k] for k in others])
        for k, s in enumerate(sets):
            if s == name:
                p[k] = stated(x[k], held[k], fitted)
    error, lines = calibration(p, y)
    print(f"{len(y)} pairs of {len(set(sets))} sets, each judged by the fit to the others; "
          f"expected calibration error {error:.3f}")
    print("\n".join(lines))
    error, lines = calibration([float(r["reliability"]) for r in rows], y)
    print(f"as the library said when the evidence was taken: {error:.3f}")
    print("\n".join(lines))
    for bound in (0.5, 0.9):
        right = sum(v for q, v in zip(p, y) if q >= bound)
        print(f"at {bound} and more: {right:.0f} of {sum(y):.0f} right ones, "
              f"{sum(q >= bound for q in p) - right:.0f} wrong")
        print(f"  as the library said: {sum(v for r, v in zip(rows, y) if float(r['reliability']) >= bound):.0f} right, "
              f"{sum(1 - v for r, v in zip(rows, y) if float(r['reliability']) >= bound):.0f} wrong")
    weights, constant = fit(x, y, held)
    print(f"constexpr double kConstant = {constant:.4f};")
    for (name, _, _), w in zip(FEATURES, weights):
        print(f"    {w:.4f}, // {name}")


if __name__ == "__main__":
    main()
