# Compares what `limits_figures studies` computed with R: analysis of variance by aov(), t.test() and
# the noncentral t distribution.
#   limits_figures studies | Rscript compare.R
lines <- readLines(file("stdin"))
worst <- c(sums = 0, tests = 0, components = 0, bias = 0, factor = 0)
note <- function(name, ours, theirs) {
    # Relative where there is something, absolute near zero.
    worst[[name]] <<- max(worst[[name]], abs(ours - theirs) / pmax(1, abs(theirs)))
}
pooled <- 0
for (line in lines) {
    x <- as.numeric(strsplit(line, " ")[[1]])
    p <- x[1]; o <- x[2]; r <- x[3]
    values <- x[24:length(x)]
    stopifnot(length(values) == p * o * r)
    data <- data.frame(
        y = values,
        part = factor(rep(seq_len(p), each = o * r)),
        op = factor(rep(rep(seq_len(o), each = r), times = p)))
    table <- summary(aov(y ~ part * op, data))[[1]]
    ss <- table[["Sum Sq"]]; df <- table[["Df"]]; ms <- ss / df
    note("sums", x[4:7], ss)
    f <- c(ms[1] / ms[3], ms[2] / ms[3], ms[3] / ms[4])
    q <- pf(f, df[1:3], df[c(3, 3, 4)], lower.tail = FALSE)
    note("tests", x[8:13], c(rbind(f, q)))
    isPooled <- q[3] > 0.25
    stopifnot(isPooled == (x[14] == 1))
    pooled <- pooled + isPooled
    if (isPooled) {
        reduced <- summary(aov(y ~ part + op, data))[[1]]
        m <- reduced[["Sum Sq"]] / reduced[["Df"]]
        theirs <- c(m[3], (m[2] - m[3]) / (p * r), 0, (m[1] - m[3]) / (o * r))
    } else {
        theirs <- c(ms[4], (ms[2] - ms[3]) / (p * r), (ms[3] - ms[4]) / r, (ms[1] - ms[3]) / (o * r))
    }
    note("components", x[15:18], theirs)
    first <- data$y[data$op == 1]
    if (sd(first) > 0) {
        test <- t.test(first, mu = -60)
        note("bias", x[19:21], c(test$conf.int + 60, test$p.value))
    }
    n <- length(first)
    note("factor", x[23], suppressWarnings(qt(0.95, n - 1, sqrt(n) * qnorm(x[22]))) / sqrt(n))
}
cat(length(lines), "studies,", pooled, "of them pooled; largest differences:\n")
print(worst)
