# Draws the errors of one family of functions against its truth tables, a panel for each function.
#   gnuplot -e "points='points.txt'; names='LnGamma Gamma_P'; columns=2; xlabel='x'; image='a.png'" \
#           plot_accuracy.gp
# points.txt holds, for each name in turn, a block of lines "argument error". Errors of 0 are drawn at
# the lower edge; errors without bound (NaN or infinity where there is a number) at the upper edge.

rows = (words(names) + columns - 1) / columns
set terminal png size 330 * columns, 250 * rows font "sans,9" noenhanced
set output image
set logscale xy
set format x "%.0e"
set format y "%.0e"
set xtics 1e-9, 1e3, 1e9
set ytics 1e-18, 1e3, 1
set grid linecolor rgb "#cccccc"
set xrange [1e-7 : 1e7]
lower = 1e-18
upper = 30.0
set yrange [lower / 3 : upper * 3]
set xlabel xlabel
unset key
clip(error) = error < lower ? lower : error > upper ? upper : error
bounded(text) = (text eq "inf") ? upper : clip(real(text))
set multiplot layout rows, columns
do for [i = 1 : words(names)] {
  set title word(names, i)
  plot points index i - 1 every ::1 using 1:(bounded(strcol(2))) \
       with points pointtype 7 pointsize 0.35 linecolor rgb "#1f4e9c"
}
unset multiplot
