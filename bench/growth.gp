# Draws docs/growth.svg from build/bench/growth.dat, the output of growth.mjs. In the checkout: gnuplot bench/growth.gp
set terminal svg size 800,460 font 'sans-serif,14' background '#ffffff' name 'growth'
set output 'docs/growth.svg'

set logscale xy
set xrange [7:1.5e6]
set xtics ("10" 10, "100" 100, "1,000" 1e3, "10,000" 1e4, "100,000" 1e5, "1,000,000" 1e6)
set ytics ("1 µs" 1e3, "10 µs" 1e4, "100 µs" 1e5, "1 ms" 1e6, "10 ms" 1e7, "100 ms" 1e8, "1 s" 1e9, "10 s" 1e10)
set xlabel 'how many'
set grid xtics ytics linecolor '#dddddd' linetype 1
set border 3 linecolor '#555555'
set tics nomirror
set key left top Left reverse
set rmargin 5

data = 'build/bench/growth.dat'
# From a thousand on: ten times as many, ten times as long.
at(column) = real(system(sprintf("awk '$1 == 1000 { print $%d }' %s", column, data)))
array perOne[4]
do for [column = 2:4] { perOne[column] = at(column) / 1000 }

plot for [column = 2:4] perOne[column] * x notitle with lines linecolor '#999999' dashtype 2, \
    data using 1:2 title 'items: arguments → items, 6 parameters each' with linespoints lw 5 pt 7 ps 0.8 lc '#8cb8e0', \
    data using 1:4 title 'replies → objects, 2 members each' with linespoints lw 1.5 pt 5 ps 0.4 lc '#b03a2e', \
    data using 1:3 title 'text of one item, by its parameters' with linespoints lw 2 pt 9 ps 0.6 lc '#2e7d32', \
    NaN title 'ten times as many, ten times as long' with lines linecolor '#999999' dashtype 2
