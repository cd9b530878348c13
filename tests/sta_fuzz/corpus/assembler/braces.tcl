puts {a
b}
set x "q\"
"
list [a
b]
