#include <stdio.h>
#include <zeps.h>

int main(void) {
    const Zep32f a[4] = {1, 2, 3, 4}, b[4] = {10, 20, 30, 40};
    Zep32f sum[4];
    const ZepStatus status = zepsAdd_32f(a, b, sum, 4);
    if (status != zepStsNoErr) return 1;
    printf("%g %g %g %g, variant %.4s\n", sum[0], sum[1], sum[2], sum[3], zepsGetLibVersion()->targetTag);
    return 0;
}
