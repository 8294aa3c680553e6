// Coefficients of the rational approximations behind Gamma, LoGamma and Erf.
#pragma once

namespace vqmath63::cody {

// W. J. Cody's published values to 15 significant digits, which the results reproduce, in the order
// of the published arrays. All three routines: W. J. Cody, "Algorithm 715: SPECFUN", ACM
// Transactions on Mathematical Software 19, 1993, 22-32.

// Gamma. (1, 2): 1 + z times the quotient of the polynomials in z = y - 1 (W. J. Cody, "An overview
// of software development for special functions", Lecture Notes in Mathematics 506, Springer,
// 1976).
inline constexpr double kGammaP[] = {-1.7161851388655,  24.7656508055759, -379.804256470946,
                                     629.331155312818,  866.966202790413, -31451.2729688484,
                                     -36144.4134186912, 66456.1438202405};
inline constexpr double kGammaQ[] = {-30.8402300119739, 315.350626979604, -1015.15636749022,
                                     -3107.77167157231, 22538.1184209802, 4755.84627752788,
                                     -134659.959864969, -115132.259675553};

// From 12 on, for Gamma and its logarithm: series in 1 / y^2, constant term last (J. F. Hart and
// others, Computer Approximations, Wiley, 1968).
inline constexpr double kStirling[] = {
    -0.001910444077728,    8.4171387781295e-04, -5.95237991304301e-04, 7.9365079350035e-04,
    -2.77777777777768e-03, 0.0833333333333333,  0.0057083835261};

// Logarithm of Gamma (W. J. Cody and K. E. Hillstrom, "Chebyshev approximations for the natural
// logarithm of the gamma function", Mathematics of Computation 21, 1967, 198-203). Around 1:
inline constexpr double kLogGammaD1 = -0.577215664901533;
inline constexpr double kLogGammaP1[] = {4.94523535929673, 201.811262085678, 2290.83837383135,
                                         11319.6720590338, 28557.2463567164, 38484.9622844379,
                                         26377.487876242,  7225.81397970029};
inline constexpr double kLogGammaQ1[] = {67.4821255030378, 1113.3323938572,  7738.7570569354,
                                         27639.8707440334, 54993.1020622616, 61611.22180066,
                                         36351.2759150194, 8785.53630243101};

// Around 2, up to 4:
inline constexpr double kLogGammaD2 = 0.422784335098467;
inline constexpr double kLogGammaP2[] = {4.97460784556893, 542.413859989107, 15506.9386497836,
                                         184793.290444563, 1088204.76946883, 3338152.96798703,
                                         5106661.67892735, 3074109.05485054};
inline constexpr double kLogGammaQ2[] = {183.032839937059, 7765.04932144501, 133190.382796607,
                                         1136705.82132197, 5267964.11743795, 13467014.543111,
                                         17827365.3035327, 9533095.59184435};

// Around 4, from 4 to 12:
inline constexpr double kLogGammaD4 = 1.79175946922806;
inline constexpr double kLogGammaP4[] = {14745.0216605994, 2426813.3694867,  121475557.404509,
                                         2663432449.63098, 29403789566.3455, 170266573776.54,
                                         492612579337.743, 560625185622.395};
inline constexpr double kLogGammaQ4[] = {2690.5301758709,  639388.565430009, 41355999.3024139,
                                         1120872109.61615, 14886137286.7881, 101680358627.244,
                                         341747634550.738, 446315818741.971};

// Error function (W. J. Cody, "Rational Chebyshev approximations for the error function",
// Mathematics of Computation 23, 1969, 631-637). Up to 0.46875, in x^2; leading coefficient of the
// numerator last:
inline constexpr double kErfA[] = {3.16112374387057, 113.86415415105, 377.485237685302,
                                   3209.37758913847, 0.185777706184603};
inline constexpr double kErfB[] = {23.6012909523441, 244.024637934444, 1282.61652607737,
                                   2844.23683343917};

// Its complement up to 4, in y; leading coefficient of the numerator last:
inline constexpr double kErfC[] = {0.56418849698867, 8.88314979438838, 66.1191906371416,
                                   298.6351381974,   881.952221241769, 1712.04761263407,
                                   2051.07837782607, 1230.339354798,   2.15311535474404e-08};
inline constexpr double kErfD[] = {15.7449261107098, 117.693950891312, 537.18110186201,
                                   1621.38957456669, 3290.79923573346, 4362.61909014325,
                                   3439.36767414372, 1230.33935480375};

// Its complement beyond 4, in 1 / y^2; leading coefficient of the numerator last:
inline constexpr double kErfP[] = {0.305326634961232,  0.360344899949804,    0.125781726111229,
                                   0.0160837851487423, 6.58749161529838e-04, 0.0163153871373021};
inline constexpr double kErfQ[] = {2.56852019228982, 1.87295284992346, 0.527905102951428,
                                   0.0605183413124413, 2.33520497626869e-03};

}  // namespace vqmath63::cody
