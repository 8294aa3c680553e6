// Polynomials for the Bessel functions of orders 0 and 1.
// Written by tools/make_bessel_tables.py; do not edit.
// The generator has its own form.
// clang-format off
#pragma once

#include <cstdint>

namespace vqmath63::bessel {

inline constexpr double kFar = 25;

// J0 in powers of x^2, x <= 2
inline constexpr double kJ0Near[] = {
    0x1p+0, -0x1p-2, 0x1.fffffffffffdfp-7, -0x1.c71c71c71b9e6p-12, 0x1.c71c71c6c67c1p-18,
    -0x1.234567759742bp-24, 0x1.02e85651dfe68p-31, -0x1.5228405c86e12p-39, 0x1.51bc42c72081dp-47,
    -0x1.fc4b0c9363fd8p-56,
};

// J1 / x in powers of x^2, x <= 3 pi / 4
inline constexpr double kJ1Near[] = {
    0x1p-1, -0x1.fffffffffffffp-5, 0x1.5555555555504p-9, -0x1.c71c71c7197fcp-15,
    0x1.6c16c16b39cdap-21, -0x1.845c89c27e8f3p-28, 0x1.27e4ec34f604bp-35, -0x1.5226632383958p-43,
    0x1.2bfe8f9f0744dp-51, -0x1.91572678cdeb2p-60,
};

// J0 about a zero on [k + 0.25, k + 1.25) pi, k from 0: zero, its tail, c1, c2, ...
inline constexpr double kJ0Zeros[][20] = {
    {0x1.33d152e971b40p+1, -0x1.0f539d7da258ep-53, -0x1.09cdb36551280p-1, 0x1.ba1deea029494p-4,
     0x1.cfae864368d70p-5, -0x1.1bb1cbe1a4071p-7, -0x1.1f992590d12bdp-9, 0x1.15382ba06cc45p-12,
     0x1.6ed3b9f07eb41p-15, -0x1.232c77d228723p-18, -0x1.1cce30282774dp-21, 0x1.7ff99166a1d0bp-25,
     0x1.2951bd56cba62p-28, -0x1.5c2c3a072cccdp-32, -0x1.bdc4723d29eafp-36, 0x1.cd45a735be40ap-40,
     0x1.f6b55bd0d5150p-44, -0x1.ce18b6a43eeabp-48, -0x1.d8e345d1c57b1p-52, 0x1.f92b3dd3a6842p-56},
    {0x1.6148f5b2c2e45p+2, 0x1.75054cd60a517p-54, 0x1.5c6e60a097823p-2, -0x1.f8f72e7a848e0p-6,
     -0x1.b2150cb41e8c1p-5, 0x1.2f7ffe90256b8p-8, 0x1.27e31fe9a9747p-9, -0x1.6f641f41954e9p-13,
     -0x1.863f481a3fc9dp-15, 0x1.ad77d74889539p-19, 0x1.32e6d99ac1102p-21, -0x1.2da37e2fa3917p-25,
     -0x1.41d72c9c7754ap-28, 0x1.1d04302a9385bp-32, 0x1.e2f28ff30bbadp-36, -0x1.84972b083496fp-40,
     -0x1.1025e0675d9acp-43, 0x1.9097f10dcad8ep-48, 0x1.cfeb6f43cde1bp-52, -0x1.32c187e28c450p-56},
    {0x1.14eb56cccdecap+3, -0x1.51970714c7c25p-52, -0x1.15f7977a772d4p-2, 0x1.00f7fcf183e0dp-6,
     0x1.68b984ec6493bp-5, -0x1.48e63600d8414p-9, -0x1.0e0d60385a6bbp-9, 0x1.d7960527757cdp-14,
     0x1.7800bc5503108p-15, -0x1.3324842f6d196p-19, -0x1.30e8cc3433374p-21, 0x1.ceda478ddf531p-26,
     0x1.4582ca1eb07d3p-28, -0x1.cade14b0cd9fdp-33, -0x1.edaf0e95d87aap-36, 0x1.43c0dc2bac07fp-40,
     0x1.17fdcfaf3e39ap-43, -0x1.567341fb99771p-48, -0x1.df0f2f913b3f1p-52, 0x1.0cf7c27ff6f13p-56},
    {0x1.79544008272b6p+3, 0x1.444fd5821d5b1p-52, 0x1.dc13e66ac2e77p-3, -0x1.42ff0cdc58463p-7,
     -0x1.38d1dd8992e04p-5, 0x1.a55e9b346edbbp-10, 0x1.e2e16f97d0a16p-10, -0x1.3dfc3782aefd0p-14,
     -0x1.5ce7f49661fb7p-15, 0x1.bb178da9aba15p-20, 0x1.2346d7477abcfp-21, -0x1.612f2e7022c11p-26,
     -0x1.3d7987278c674p-28, 0x1.6dbc0d0d5f711p-33, 0x1.e88b9aacda21cp-36, -0x1.0ad773e3f11c4p-40,
     -0x1.17e9e187db3ccp-43, 0x1.21bb13ac4e936p-48, 0x1.e24a77bcd0015p-52, -0x1.d1a7e31753cb2p-57},
    {0x1.ddca13ef271d2p+3, -0x1.9796609364e85p-51, -0x1.a701d0f967500p-3, 0x1.c54b930fef892p-8,
     0x1.17798aa09f11fp-5, -0x1.2a2151407dd05p-10, -0x1.b541f829bfad6p-10, 0x1.cc0bda19ffaa7p-15,
     0x1.41f3b0662bda4p-15, -0x1.4b230b1136dd2p-20, -0x1.1223e2bb4193bp-21, 0x1.11963960f7af7p-26,
     0x1.2ffb8ce780b00p-28, -0x1.24c47bc1c997dp-33, -0x1.da51c2e28b210p-36, 0x1.b75d31ff89c2dp-41,
     0x1.12b9929dc3c28p-43, -0x1.e85b168f2fc0ap-49, -0x1.dd3c1c3b58ca6p-52, 0x1.9083472be8c16p-57},
    {0x1.212313f8a19f6p+4, -0x1.165fd108f46ffp-50, 0x1.8077f56c9b782p-3, -0x1.5467eb535deaap-8,
     -0x1.fd7c3ad6f59dfp-6, 0x1.c1b47c809c5e4p-11, 0x1.9166c7d3eaa13p-10, -0x1.5f0152478f307p-15,
     -0x1.2aa939fd9c667p-15, 0x1.0129708eb1805p-20, 0x1.01716dc8344e3p-21, -0x1.b227eee749b90p-27,
     -0x1.2101c39af0240p-28, 0x1.db1e85e3d5221p-34, 0x1.c809fb4d28f7dp-36, -0x1.6c29a64c5dc5ap-41,
     -0x1.0ab311ef92c95p-43, 0x1.9c95d3dabf318p-49, 0x1.d2f41aa7b9e58p-52, -0x1.583a730890a5ap-57},
    {0x1.5362dd173f792p+4, 0x1.1d2dfa1c3b5a8p-51, -0x1.62d93aa9d05bbp-3, 0x1.0ba9ce88929f2p-8,
     0x1.d7073daebb02bp-6, -0x1.62813c7f5872dp-11, -0x1.74a948d056327p-10, 0x1.1695765f13946p-15,
     0x1.170ab5eead945p-15, -0x1.9c8e418a03ebap-21, -0x1.e4d893d979514p-22, 0x1.60f73a620424dp-27,
     0x1.12782e12493cfp-28, -0x1.881d53868657fp-34, -0x1.b4c475a26f170p-36, 0x1.3131a07b6627ep-41,
     0x1.0171431caf291p-43, -0x1.5eed7c2979ca8p-49, -0x1.c5d6e5e651a9ap-52, 0x1.28dd99bc0e6aap-57},
    {0x1.85a3b930156ddp+4, 0x1.0847c620015e0p-50, 0x1.4b2a2ebf61ecep-3, -0x1.b3297fdae7902p-9,
     -0x1.b8105d59b114bp-6, 0x1.20a3f8c12a1fap-11, 0x1.5d18d69de6c96p-10, -0x1.c79db4b341a53p-16,
     -0x1.0679c92c2d00ap-15, 0x1.53ac4ecd33b00p-21, 0x1.ca750780b8dbbp-22, -0x1.253415e75b0f1p-27,
     -0x1.0514140f848bap-28, 0x1.49198ffe5252bp-34, 0x1.a20d41d33260ep-36, -0x1.02fee5c3f8b9cp-41,
     -0x1.efda9d71a125dp-44, 0x1.2d286809e1a31p-49, 0x1.b788d88254a81p-52, -0x1.018c818c3b976p-57},
};

// J1 about a zero on [k + -0.25, k + 0.75) pi, k from 1: zero, its tail, c1, c2, ...
inline constexpr double kJ1Zeros[][20] = {
    {0x1.ea75575af6f09p+1, -0x1.60155a9d1b256p-53, -0x1.9c6cf582cbf7fp-2, 0x1.ae8a39f51ad04p-5,
     0x1.b589d1da13904p-5, -0x1.537544c331daep-8, -0x1.24b340995904ap-9, 0x1.6e4c2d5354821p-13,
     0x1.83a06e30c2473p-15, -0x1.9799d4ca34f28p-19, -0x1.33825cd1e3ad9p-21, 0x1.1706924c5f1bcp-25,
     0x1.4569b1889b40fp-28, -0x1.03b9f3881b6efp-32, -0x1.ec61b6060f28fp-36, 0x1.5ecd0c3e0b993p-40,
     0x1.17889ae5b96bfp-43, -0x1.68f1c332ebbf6p-48, -0x1.e12bbfeb04b14p-52, 0x1.3c9ff26783f00p-56},
    {0x1.c0ff5f3b47250p+2, -0x1.b226d9d243827p-54, 0x1.33518b3874e8ap-2, -0x1.5e70dc60362bfp-6,
     -0x1.80c83bdeee5b0p-5, 0x1.9a4b292e3de4cp-9, 0x1.13fbc7d6981ebp-9, -0x1.07358bbdc035bp-13,
     -0x1.796a751f86256p-15, 0x1.4255b015d750cp-19, 0x1.3026e0cd1581fp-21, -0x1.d48dcdcc45526p-26,
     -0x1.44639c9a12ba6p-28, 0x1.c62cd73b45fb4p-33, 0x1.ecadf2cd528a0p-36, -0x1.3bb9381440e94p-40,
     -0x1.181e0cae15815p-43, 0x1.4b80270179e18p-48, 0x1.e12331474bd7bp-52, -0x1.1af5c9b3ca06ep-56},
    {0x1.458d0d0bdfc29p+3, 0x1.02610a51562b6p-51, -0x1.ff654544ebcd1p-3, 0x1.9223ff2c0785bp-7,
     0x1.4b0c5d5da6789p-5, -0x1.f91a9ee0d28a5p-10, -0x1.f51c2489b9e0cp-10, 0x1.6b4c9ca0f7c6ep-14,
     0x1.63c54754369f0p-15, -0x1.e3725dafa3effp-20, -0x1.25c123898cf4dp-21, 0x1.7486f6ce70e58p-26,
     0x1.3e3bf15141411p-28, -0x1.78a392b498e31p-33, -0x1.e844413dd7649p-36, 0x1.0e267d3e0d59ap-40,
     0x1.17759cefee029p-43, -0x1.22621cf45570bp-48, -0x1.e1c9e898fb9afp-52, 0x1.f16deacab9046p-57},
    {0x1.aa5baf310e5a2p+3, 0x1.2bce7fd18e693p-52, 0x1.bf3337873a7d8p-3, -0x1.0c83a2d7add33p-7,
     -0x1.251858011816ap-5, 0x1.59eb160bf72e3p-10, 0x1.c5bce33af2d11p-10, -0x1.0413e306e0455p-14,
     -0x1.4a6704d0578abp-15, 0x1.6c43eee019e07p-20, 0x1.16abd77fac221p-21, -0x1.257f17058ee12p-26,
     -0x1.32db1a4e8b489p-28, 0x1.33acd32b54e3ap-33, 0x1.dc8ea955442f0p-36, -0x1.c653e66fbf484p-41,
     -0x1.1335af8fd1d71p-43, 0x1.f3b63e4544bfap-49, 0x1.dd6e0f764367dp-52, -0x1.b0dfaf2bbfd50p-57},
    {0x1.0787b360508c5p+4, -0x1.d2a68e88ab317p-50, -0x1.925c6fca08f55p-3, 0x1.86dd32e059b0ep-8,
     0x1.09463bbd0367fp-5, -0x1.fda0298c8769cp-11, -0x1.9f4be60758f4bp-10, 0x1.877991af9d849p-15,
     0x1.32cb00ee88d59p-15, -0x1.19d8ce8c5958dp-20, -0x1.06a042fa076bap-21, 0x1.d3a689ff6c97cp-27,
     0x1.25108b502e58fp-28, -0x1.f7b8f3754a682p-34, -0x1.cc402394b8f55p-36, 0x1.7cd98a922eba1p-41,
     0x1.0c35fcb2d9116p-43, -0x1.ab6f9987ccad4p-49, -0x1.d489a2bec6a53p-52, 0x1.77168574c839cp-57},
    {0x1.39da8e7416ca4p+4, -0x1.21830197e9e86p-50, 0x1.70c511227d5aap-3, -0x1.2ccb0e97558dap-8,
     -0x1.e7dc08e70e999p-6, 0x1.8acdc5b058c1cp-11, 0x1.80503724ad2a5p-10, -0x1.32ee4ca1fd05ep-15,
     -0x1.1e5d2836c5987p-15, 0x1.c129f077f523dp-21, 0x1.ef16158dbc146p-22, -0x1.7b9bb09385e89p-27,
     -0x1.16f3927c01d5dp-28, 0x1.a0bc8e6099ca3p-34, 0x1.ba12b53c7bb03p-36, -0x1.40d6f9723bb02p-41,
     -0x1.03ae680c6ea6cp-43, 0x1.6e0fcc8d95accp-49, 0x1.c8a3fa02248bep-52, -0x1.45219fce99afdp-57},
    {0x1.6c294e3d4d8acp+4, -0x1.1bf33afef88f1p-51, -0x1.5664e13b70622p-3, 0x1.e16555e108dc6p-9,
     0x1.c5e1ad9fb2f40p-6, -0x1.3d369f958e576p-11, -0x1.66f4ec27a9686p-10, 0x1.f0de053265be0p-16,
     0x1.0cf2643410d82p-15, -0x1.6f46d51e88114p-21, -0x1.d407f7befd2f9p-22, 0x1.3a33cdaf0d3dep-27,
     0x1.09901a15dee04p-28, -0x1.5d857101212ecp-34, -0x1.a7cb26b9cc36fp-36, 0x1.10b79799fdf5ep-41,
     0x1.f527a1abbb36ap-44, -0x1.3b30463dfe35ap-49, -0x1.bb2b8086886c3p-52, 0x1.1ad8b7d1d1f4bp-57},
    {0x1.9e7570dcea106p+4, 0x1.1a2686480d882p-51, 0x1.40f90793605bbp-3, -0x1.8c833077fbeaep-9,
     -0x1.aa0ce0421d1a7p-6, 0x1.05fa598ef5d27p-11, 0x1.51d30d78ab4c5p-10, -0x1.9c5807675cdaep-16,
     -0x1.fc1bbf57dd70bp-16, 0x1.32dfea25424cep-21, 0x1.bc212082a507fp-22, -0x1.08b946e4d9ad5p-27,
     -0x1.fa8f9bb0311c9p-29, 0x1.293fe6f3be19dp-34, 0x1.9653aa01949d0p-36, -0x1.d4776ea7bf5a9p-42,
     -0x1.e300c8f8db719p-44, 0x1.1168808740d32p-49, 0x1.ad2a51d9181cap-52, -0x1.eedd20760ac26p-58},
};

// Y0 about a zero on [k + -0.25, k + 0.75) pi, k from 2: zero, its tail, c1, c2, ...
inline constexpr double kY0Zeros[][22] = {
    {0x1.c581dc4e72103p+2, -0x1.9774a495f56cfp-54, 0x1.334cca0697a5bp-2, -0x1.5aef611fc4d57p-6,
     -0x1.8969c64cbf452p-5, 0x1.b2f14a95527cbp-9, 0x1.1d35e85fde2a1p-9, -0x1.26dd71e391c6ap-13,
     -0x1.8177e4fe5202fp-15, 0x1.6a9227352daddp-19, 0x1.34aa7573d07b3p-21, -0x1.0a2814d6b9693p-25,
     -0x1.442a3d1ca2750p-28, 0x1.fa6c4f76235fep-33, 0x1.f14e41065640ap-36, -0x1.714bc009060c2p-40,
     -0x1.06741a0cdbb42p-43, 0x1.3336145f2c93dp-48, 0x1.36e833150ff3dp-51, -0x1.255b4e7a54602p-55,
     0x1.d725bf47f4112p-60, -0x1.9f17440063b85p-62},
    {0x1.471d735a47d58p+3, -0x1.cb49ff791c495p-51, -0x1.ff635cc72b9f1p-3, 0x1.9036451ff57c5p-7,
     0x1.4e667a71556afp-5, -0x1.0325ee41e910cp-9, -0x1.fe23914fb9127p-10, 0x1.7f84d7c50e4c2p-14,
     0x1.6afdd57be1deep-15, -0x1.04053abf437afp-19, -0x1.2aea9ec48c0a0p-21, 0x1.93eb9f1dd0106p-26,
     0x1.428a3a3d0d0cfp-28, -0x1.99d8c42915878p-33, -0x1.ec9803faaa2fbp-36, 0x1.2613636318c12p-40,
     0x1.18f2b7c53ce28p-43, -0x1.3bc8da23a317dp-48, -0x1.f0a90e5b689f1p-52, 0x1.06a83cae81383p-56,
     0x1.565fdc52562f6p-60, -0x1.51e611b4d3a2cp-65},
    {0x1.ab8e1c4a1e74ap+3, -0x1.7df81de86f24dp-51, 0x1.bf32a27594007p-3, -0x1.0bc2d84e65214p-7,
     -0x1.26cab38a8b368p-5, 0x1.5f03e47165d72p-10, 0x1.caaa76e34992dp-10, -0x1.0c5f18c46d02fp-14,
     -0x1.4f0af7d46cd22p-15, 0x1.7d1e28094e0eep-20, 0x1.1ad0731226ba8p-21, -0x1.36021c8caab5ep-26,
     -0x1.371ae6c630308p-28, 0x1.46ce07755fb30p-33, 0x1.e235d247e0d16p-36, -0x1.e408deb957782p-41,
     -0x1.15f02e85d8e07p-43, 0x1.0a442ff4ca483p-48, 0x1.efa4a146ba3bbp-52, -0x1.c4e9fa87e2ac6p-57,
     -0x1.56d9ab1d3d43ap-60, 0x1.268a6ddfd32a5p-65},
    {0x1.0803c74003214p+4, 0x1.25a237d12159bp-50, -0x1.925c35988ee29p-3, 0x1.862549367591ep-8,
     0x1.0a4512039d6a2p-5, -0x1.013b38cfb9292p-10, -0x1.a24a1215f6684p-10, 0x1.8f91421377faap-15,
     0x1.35d17cec01709p-15, -0x1.2283a93113f9fp-20, -0x1.099e71392dc91p-21, 0x1.e5de01e2d7692p-27,
     0x1.2885854d80c39p-28, -0x1.0730c2941891dp-33, -0x1.d1743badb504bp-36, 0x1.8f87257132f9ep-41,
     0x1.0f1620b8a9ba2p-43, -0x1.c10d1a45934afp-49, -0x1.e77aed0208fbep-52, 0x1.84eeeb2206a78p-57,
     0x1.53698d3d51cd9p-60, -0x1.0117d4cb30cb3p-65},
    {0x1.3a42cdf5febd7p+4, -0x1.8bf92d51fbaebp-50, 0x1.70c4f66cab47fp-3, -0x1.2c6731071e936p-8,
     -0x1.e924b85a17361p-6, 0x1.8d6c364d92082p-11, 0x1.8247b02d6b0f6p-10, -0x1.376125938561cp-15,
     -0x1.206da232a2b44p-15, 0x1.caf84db871372p-21, 0x1.f36711772d5f1p-22, -0x1.8654b000f3d9dp-27,
     -0x1.199ec889f4513p-28, 0x1.aeb1a841f6e88p-34, 0x1.be67c08dc363fp-36, -0x1.4cdf9e3057f7bp-41,
     -0x1.0648ebfc40801p-43, 0x1.7c82997ef35bcp-49, 0x1.db40871acd3cbp-52, -0x1.4ea409457c62cp-57,
     -0x1.4cfd239baeac7p-60, 0x1.c09d5bcab73c6p-66},
    {0x1.6c832fd77ac07p+4, 0x1.ca75080cf53a8p-50, -0x1.5664d37c37d7bp-3, 0x1.e0ee8ec84659ap-9,
     0x1.c6c415c971b4bp-6, -0x1.3ec49cb941f55p-11, -0x1.6853b2d047884p-10, 0x1.f632a9396fd4bp-16,
     0x1.0e6afa01af53cp-15, -0x1.7541247acddf6p-21, -0x1.d735e8beb5fe0p-22, 0x1.40e6a7caf1479p-27,
     0x1.0b9cfae18c9e5p-28, -0x1.668087e041b40p-34, -0x1.ab498d6a7d020p-36, 0x1.18b56517c36d2p-41,
     0x1.f99d0d0935d34p-44, -0x1.450a8d1fa838ep-49, -0x1.cd064c3002ee6p-52, 0x1.21621b3a2849fp-57,
     0x1.44d5b5ce0d358p-60, -0x1.88700805e07edp-66},
    {0x1.9ec46f3e80146p+4, -0x1.03e052bd9c0afp-52, 0x1.40f8ffdf09a5fp-3, -0x1.8c37a29c4586fp-9,
     -0x1.aab099314b209p-6, 0x1.06f735cc0f6a6p-11, 0x1.52d29a06802e0p-10, -0x1.9fc04c675c0eap-16,
     -0x1.fe48825ed3c46p-16, 0x1.36bd2d58ff329p-21, 0x1.be87e2cacfe15p-22, -0x1.0d1fdedc6360ap-27,
     -0x1.fdbeb105adcedp-29, 0x1.2f44d00dc3508p-34, 0x1.9921363fb599fp-36, -0x1.df6b7fde4314fp-42,
     -0x1.e6bf75fffe6bfp-44, 0x1.1847f482bc8fap-49, 0x1.be242f404cf5bp-52, -0x1.f7e62ee9ac3c8p-58,
     -0x1.3bd8a9f4937c3p-60, 0x1.58dfde3807726p-66},
};

// Y1 about a zero on [k + 0.25, k + 1.25) pi, k from 2: zero, its tail, c1, c2, ...
inline constexpr double kY1Zeros[][22] = {
    {0x1.13127ae6169b4p+3, 0x1.479cc068d9046p-52, 0x1.15f993fceab5cp-2, -0x1.02b3933cf21b1p-6,
     -0x1.6395dfe49fcd4p-5, 0x1.3ced2a2e69180p-9, 0x1.07a678d6000bbp-9, -0x1.b50d7e1d32027p-14,
     -0x1.6f7bab104f31cp-15, 0x1.176e72bf94e80p-19, 0x1.2becb2b6b973bp-21, -0x1.a384eec00c304p-26,
     -0x1.41e7a921fffd5p-28, 0x1.9e32850c845b1p-33, 0x1.ec40b481959a9p-36, -0x1.2686928a666d5p-40,
     -0x1.16f73664d58b0p-43, 0x1.3188cc3c92d0ep-48, 0x1.fa775510b7e19p-52, -0x1.14317b18a3541p-56,
     -0x1.2cbaf32442e3cp-60, 0x1.a4013b01c17fcp-66},
    {0x1.77f9138d43206p+3, 0x1.0fc786ce06080p-55, -0x1.dc14ea14e89f9p-3, 0x1.4429fef5b5fbdp-7,
     0x1.367d7d608e4bap-5, -0x1.9d6eb2bc49e35p-10, -0x1.dc4f991b3db86p-10, 0x1.315ec04d6e6c0p-14,
     0x1.571814a1aa2dep-15, -0x1.a2977fa42f4f6p-20, -0x1.1e86423084c0dp-21, 0x1.4a7b82d43427cp-26,
     0x1.390660a0a4c70p-28, -0x1.549e8b49f3747p-33, -0x1.e32cf67af1868p-36, 0x1.eff59473dc5fdp-41,
     0x1.15e5779d7e211p-43, -0x1.0d694a78d5e54p-48, -0x1.ef0cae88de650p-52, 0x1.c68ea21567cc8p-57,
     0x1.56a05f305d4d7p-60, -0x1.39746b51be426p-65},
    {0x1.dcb7d88de848bp+3, -0x1.5e091a50f8e05p-51, 0x1.a7022be084d99p-3, -0x1.c650b6b83109ap-8,
     -0x1.163191c30aa62p-5, 0x1.26b045287ddcap-10, 0x1.b17602840abf4p-10, -0x1.c0a9cee3c842fp-15,
     -0x1.3e398cbc472c6p-15, 0x1.3f35db1ff1dc4p-20, 0x1.0e9b612dbbbd9p-21, -0x1.056babcda67a9p-26,
     -0x1.2c1a8c8e79a88p-28, 0x1.161b6ab2b103dp-33, 0x1.d4caa0db66974p-36, -0x1.9fdda6b98f8c3p-41,
     -0x1.101be7e05024cp-43, 0x1.cdc4608062ab8p-49, 0x1.e83d447f33620p-52, -0x1.8cbff438ce1eep-57,
     -0x1.53934ecd4534ep-60, 0x1.13f32d26cb3b9p-65},
    {0x1.20b1c695f1e3bp+4, -0x1.a1ee4c5487edep-50, -0x1.80781c32422e7p-3, 0x1.54eda697a0098p-8,
     0x1.fbe6df840847fp-6, -0x1.be318d61276e1p-11, -0x1.8efee4094379cp-10, 0x1.59145b4f0e4e2p-15,
     0x1.282d26a74c36ap-15, -0x1.f56c29d9adcf3p-21, -0x1.fdd03174f60b2p-22, 0x1.a44a790819605p-27,
     0x1.1df653318e5c5p-28, -0x1.c96e9d017cdc0p-34, -0x1.c3439e3b37d3fp-36, 0x1.5d38b2c65c842p-41,
     0x1.0833a05a14b25p-43, -0x1.8afd0fb3b83e2p-49, -0x1.dd717b9264130p-52, 0x1.58d4b3e44672dp-57,
     0x1.4df1038d06284p-60, -0x1.e4afe2f9232a7p-66},
    {0x1.53025492188cdp+4, 0x1.391b14410528fp-50, 0x1.62d94d97e859cp-3, -0x1.0bf614807033cp-8,
     -0x1.d5f857a2a6107p-6, 0x1.6081b0b7fe572p-11, 0x1.7307b03e248f8p-10, -0x1.132c0aa83d0e0p-15,
     -0x1.154ed4598d2ccp-15, 0x1.94f64f476e918p-21, 0x1.e127258537af0p-22, -0x1.588c758e129e5p-27,
     -0x1.1021cdd89bed8p-28, 0x1.7cfa7a77e2d6ap-34, 0x1.b0e010d0b0fdfp-36, -0x1.276cc4acedc49p-41,
     -0x1.fe925ed438824p-44, 0x1.5313c34c6aa13p-49, 0x1.d04d8ac906480p-52, -0x1.2bff72d59d338p-57,
     -0x1.4680627d6ae65p-60, 0x1.a9d10fdfcfaa1p-66},
    {0x1.854fa303820cap+4, 0x1.52f75f025b205p-52, -0x1.4b2a38f1ab9b4p-3, 0x1.b3878aadeb34dp-9,
     0x1.b750d89a9b35fp-6, -0x1.1f6911725a956p-11, -0x1.5beee6fd51c8ap-10, 0x1.c3625d7a6508fp-16,
     0x1.05375a588a707p-15, -0x1.4ee5e4e7cb41ap-21, -0x1.c7b3d81b5d14cp-22, 0x1.1fce14f497d94p-27,
     0x1.0346643b88352p-28, -0x1.41c861c60fae7p-34, -0x1.9eeda117dc98bp-36, 0x1.f8cf2dbe1c405p-42,
     0x1.ec46524462d0ap-44, -0x1.250137dcf2d6bp-49, -0x1.c21b4020e8649p-52, 0x1.060caa985a68dp-57,
     0x1.3e0953ec90db4p-60, -0x1.772625a7be2e1p-66},
};

// Y0 on [3 pi / 4, 7 pi / 4) in the same form
inline constexpr double kY0SecondZero[] = {
    0x1.fa9534d98569cp+1, -0x1.f06ae7804384ep-54, -0x1.9c34256a12a0cp-2, 0x1.a09c9290367efp-5,
    0x1.df6d59bf50ebdp-5, -0x1.c116fdc598087p-8, -0x1.1e32bc4ef89afp-9, 0x1.99827651647a3p-13,
    0x1.ab2c1fecc9426p-15, -0x1.486371e5591b6p-18, -0x1.3b2168140e4a8p-22, -0x1.77705d0260dadp-26,
    0x1.452e98940b6d0p-26, -0x1.f6933920fc17dp-29, 0x1.a5a38e054a999p-31, -0x1.99557aeec1cbap-33,
    0x1.8890e214e5f28p-35, -0x1.74c63412863a2p-37, 0x1.65adca6bb13bfp-39, -0x1.59c0f81e33654p-41,
    0x1.3b73203fa01d9p-43, -0x1.1b51ecfe8ba2cp-45, 0x1.7625473296566p-47, -0x1.bf0ddd8344d6bp-49,
    0x1.2aec692940d27p-54, 0x1.56aad3a4c56b9p-54, 0x1.70e50a88b8034p-54, -0x1.d5c8da97896cdp-56,
};

// Y1 on [5 pi / 4, 9 pi / 4) in the same form
inline constexpr double kY1SecondZero[] = {
    0x1.5b7fe4e87b02ep+2, 0x1.dfe7bac228e8cp-52, -0x1.5c7c556f0c19ap-2, 0x1.00b9f8571ca1fp-5,
    0x1.a15d92dfe3e26p-5, -0x1.10a329e2c23f9p-8, -0x1.1be6db9923ac6p-9, 0x1.337c7e138f2e7p-13,
    0x1.85b940eb5f8b5p-15, -0x1.8061914797597p-19, -0x1.255e6cf63fa77p-21, 0x1.b62ccff33a8b5p-26,
    0x1.80b1a9f959e28p-28, -0x1.a7edf279e37f7p-32, 0x1.406d239747d78p-39, -0x1.384caf64403b7p-38,
    0x1.4975b7af4b7dfp-40, -0x1.bf958545c98c2p-43, 0x1.40c9973aa2df9p-45, -0x1.e5ff0151fafd5p-48,
    0x1.5efe7c527fd1dp-50, -0x1.cad9903103462p-53, 0x1.8bf682e21624ep-55, -0x1.c8a95dc2bc197p-57,
    0x1.0a01cbd029790p-59,
};

// Y0 less its logarithm, in powers of x^2
inline constexpr double kY0Near[] = {
    -0x1.2e4d699cbd01fp-4, 0x1.6bbcb41034286p-3, -0x1.075b1bbf41362p-6, 0x1.1a6206b7b9688p-11,
    -0x1.3e997941ffaf5p-17, 0x1.bce4a5ff23773p-24, -0x1.a6ee78fb03014p-31, 0x1.2393c55ce1bf1p-38,
    -0x1.31045249298bap-46, 0x1.f3d8443e2e018p-55, -0x1.366d28641767dp-63,
};

// what multiplies ln x
inline constexpr double kY0Log[] = {
    0x1.45f306dc9c883p-1, -0x1.45f306dc9c87fp-3, 0x1.45f306dc9c752p-7, -0x1.21bb94524cceep-12,
    0x1.21bb9450bd627p-18, -0x1.72db9e9a7dfc0p-25, 0x1.49a6aad64b6ddp-32, -0x1.ae89c0b5f1886p-40,
    0x1.ad81bb40cc30dp-48, -0x1.3d2b4742bc774p-56,
};

// Y1 less its logarithm and pole, over x, in powers of x^2 - 8
inline constexpr double kY1Near[] = {
    0x1.51dd34f6a80c0p-4, 0x1.369daf19b82a4p-6, -0x1.9cc7b4993ede9p-10, 0x1.79eb3dc1c8d67p-15,
    -0x1.6fd45fc637daep-21, 0x1.c22abaa98a8b7p-28, -0x1.7c6b1709c601dp-35, 0x1.d7d9ec252fce4p-43,
    -0x1.c0736e81492cdp-51, 0x1.514d752dcf645p-59, -0x1.9c083fab0204ep-68, 0x1.a297dcdbe1210p-77,
};

// what multiplies ln x, over x
inline constexpr double kY1Log[] = {
    0x1.70f2d396de1c2p-4, -0x1.389a8c99f4810p-6, 0x1.0042459d0ae5fp-10, -0x1.7ed9e9b33f2a4p-16,
    0x1.4961bc642f990p-22, -0x1.719ce3b304715p-29, 0x1.245b4594320a0p-36, -0x1.57e54c1bcf591p-44,
    0x1.38c41f174ac31p-52, -0x1.c53095434d45ap-61, 0x1.0beea8d263f5fp-69, -0x1.087ac9e7ad8b7p-78,
};

// sqrt(x (J0^2 + Y0^2)) in powers of 1 / x^2, x >= kFar
inline constexpr double kModulus0[] = {
    0x1.9884533d43651p-1, -0x1.9884533d42e6dp-5, 0x1.524d94e50728ap-4, -0x1.bb86062f54f7fp-2,
    0x1.2a996e6a5f20ap+2, -0x1.51774d6203f98p+6, 0x1.e1c8d16dc2e94p+10,
};

// x times what its angle exceeds x - (2 n + 1) pi / 4 by
inline constexpr double kPhase0[] = {
    -0x1p-3, 0x1.0aaaaaaaaa9c0p-4, -0x1.ad333331b875ep-3, 0x1.a358457c5c7fep+0,
    -0x1.7797e462d0857p+4, 0x1.0b7280e72ffadp+9, -0x1.0db331db6361cp+14, 0x1.18328dfbea673p+19,
};

// sqrt(x (J1^2 + Y1^2)) in powers of 1 / x^2, x >= kFar
inline constexpr double kModulus1[] = {
    0x1.9884533d43651p-1, 0x1.32633e6df266fp-3, -0x1.3bf6585bb7149p-3, 0x1.48fa3aaca32c8p-1,
    -0x1.8b2a43e2a7af8p+2, 0x1.a36f8dc2df9bap+6, -0x1.2122a4bbd91c4p+11,
};

// x times what its angle exceeds x - (2 n + 1) pi / 4 by
inline constexpr double kPhase1[] = {
    0x1.8000000000000p-2, -0x1.4ffffffffec9ep-3, 0x1.7bccccb4ee49fp-2, -0x1.2f484177b03e7p+1,
    0x1.e9d4a58a0dde6p+4, -0x1.450dbf6ae1dc7p+9, 0x1.05de53eb9fcb9p+14,
};

// I0 in powers of x^2, x <= 8
inline constexpr double kI0Near[] = {
    0x1p+0, 0x1p-2, 0x1.0000000000002p-6, 0x1.c71c71c71c6dfp-12, 0x1.c71c71c71cbebp-18,
    0x1.23456789a82b6p-24, 0x1.02e85c08d2b69p-31, 0x1.522a43f14ed5bp-39, 0x1.522a44465db87p-47,
    0x1.0b312ee0b62c8p-55, 0x1.5601c817fb294p-64, 0x1.69c761327b691p-73, 0x1.41b6d2a3ef29ep-82,
    0x1.e56ec2a042a81p-92, 0x1.46a6fe00cd6ffp-101, 0x1.31c4039a69bf6p-111, 0x1.20de50ee937a2p-120,
};

// I1 / x
inline constexpr double kI1Near[] = {
    0x1p-1, 0x1.0000000000001p-4, 0x1.5555555555540p-9, 0x1.c71c71c71c9f2p-15,
    0x1.6c16c16c13a31p-21, 0x1.845c8a0d2769ep-28, 0x1.27e4fb73ec47ep-35, 0x1.522a443bfc5e8p-43,
    0x1.2c97551e62e0ap-51, 0x1.ab8235081a452p-60, 0x1.f172556758d22p-69, 0x1.e29108846b664p-78,
    0x1.8a6efe52fa2efp-87, 0x1.1dc64f2e4590cp-96, 0x1.1ebc3216bf4cfp-106, 0x1.20ebdb99edb53p-115,
};

// e^(-x) sqrt(x) I0 from x = 8, 16 on: a, b, then powers of a / x - b
inline constexpr double kI0Far[][17] = {
    {0x1p+5, 0x1.8000000000000p+1, 0x1.9d95f3db6c2d7p-2, 0x1.cb893ff82f005p-10,
     0x1.4669d4382c166p-15, 0x1.fddc93921b29ap-20, 0x1.782a347e45e10p-23, 0x1.c6382e216c537p-26,
     0x1.e253a098b9810p-29, -0x1.31b5b30d63f49p-31, -0x1.fe37eaa114221p-32, -0x1.7df1f716df9ccp-35,
     0x1.407508f003dddp-35, 0x1.80f84730ee853p-38, -0x1.d39ae4513d1b5p-39, -0x1.62ae88405d173p-42,
     0x1.1d57b97156fe0p-42},
    {0x1p+5, 0x1p+0, 0x1.9a2444cad63c4p-2, 0x1.a7a0f52d8b308p-10, 0x1.fd45ca44d6547p-16,
     0x1.25cd11bbe3e78p-20, 0x1.02d40e675a864p-24, 0x1.3a08c9bfe6129p-28, 0x1.ef67b648c5204p-32,
     0x1.ea52920e0a629p-35, 0x1.29ac8c06d74dbp-37, 0x1.b48e9e9d82e83p-40, 0x1.75e6255042e32p-42,
     0x1.7cd0e3b45068fp-44, 0x1.3c4cf5dcfa2f7p-45, 0x1.34ec386025f11p-46, 0x1.2461a058dae0bp-48},
};

// e^(-x) sqrt(x) I1 from x = 8, 16 on: a, b, then powers of a / x - b
inline constexpr double kI1Far[][17] = {
    {0x1p+5, 0x1.8000000000000p+1, 0x1.89b1add3254e2p-2, -0x1.470fe5abaa641p-8,
     -0x1.01052113efe3dp-14, -0x1.4ee22c1f37fafp-19, -0x1.c1904f182b83fp-23,
     -0x1.02ea2f183d239p-25, -0x1.167da8b4fb197p-28, 0x1.240d2ad72fa4ap-31, 0x1.0f8bae3a37ef5p-31,
     0x1.cbf0343a2d07bp-35, -0x1.49cf220c22782p-35, -0x1.b7bc89cc812e9p-38, 0x1.ddfec2b5935d5p-39,
     0x1.9b59179d74c19p-42, -0x1.255fe0b8e86adp-42},
    {0x1p+5, 0x1p+0, 0x1.93ae76b001770p-2, -0x1.38a200a5fb757p-8, -0x1.a179cca80908ap-15,
     -0x1.947d7ad1285e7p-20, -0x1.47243a822071cp-24, -0x1.792d703ea27eap-28,
     -0x1.1f8e56d85229dp-31, -0x1.15be1d1ff311ap-34, -0x1.4b0e342b211adp-37,
     -0x1.de9831a422786p-40, -0x1.95a3a76608466p-42, -0x1.978527afc4246p-44,
     -0x1.4cc73db4ea02cp-45, -0x1.4764e014029cfp-46, -0x1.3b44d78c0953ep-48},
};

// e^(x) sqrt(x) K0 from x = 1, 2, 4, 8 on: a, b, then powers of a / x - b
inline constexpr double kK0Far[][17] = {
    {0x1p+2, 0x1.8000000000000p+1, 0x1.2a7398dbab71dp+0, -0x1.73fc75b873ed2p-6,
     0x1.8084576de3705p-10, -0x1.26b1595dfa8a4p-13, 0x1.16884ec11908fp-16, -0x1.2cfd4c3384174p-19,
     0x1.6580d8f0283dep-22, -0x1.c7e6cf05b445ap-25, 0x1.3361043b77390p-27, -0x1.b1cec14ec3093p-30,
     0x1.3dd00b1fd9aa8p-32, -0x1.db6d7c3088532p-35, 0x1.7081564a63c9ap-37, -0x1.5d93f89ceba50p-39,
     0x1.2130b154a8281p-41},
    {0x1p+3, 0x1.8000000000000p+1, 0x1.3429d6a326a48p+0, -0x1.d092791c4b84fp-7,
     0x1.3f6dd8ec2451cp-11, -0x1.58b86bc1915b9p-15, 0x1.dcd349e8a1e40p-19, -0x1.83dc40d17bfb6p-22,
     0x1.626f54d79c10cp-25, -0x1.61e4b89b476bfp-28, 0x1.7b138dcaf51fbp-31, -0x1.ae1a2395fd254p-34,
     0x1.00017780efa86p-36, -0x1.3be3c69ccabd7p-39, 0x1.954f81bfaa1fcp-42, -0x1.2ed982dbdd5efp-44,
     0x1.a2342d27131aap-47},
    {0x1p+4, 0x1.8000000000000p+1, 0x1.39ffe15095facp+0, -0x1.0bc09b32817bdp-7,
     0x1.c226a89e201d3p-13, -0x1.392b74b98ab8fp-17, 0x1.226c85c5267d3p-21, -0x1.468cc58dc8c77p-25,
     0x1.a6b4065fa8470p-29, -0x1.31083820a2bdcp-32, 0x1.e0694261d763ep-36, -0x1.969a7be08b7a0p-39,
     0x1.6db752df2d8bep-42, -0x1.59f1c2126c252p-45, 0x1.56df5b5062217p-48, -0x1.7c82091db7be8p-51,
     0x1.9ad74697c67a2p-54},
    {0x1p+4, 0x1p+0, 0x1.3e6cb6eb84735p+0, -0x1.2c3f8f930de94p-7, 0x1.2da34174a8a0dp-12,
     -0x1.0ac56933f6f27p-16, 0x1.4ad9b4ca82388p-20, -0x1.0391c7ec60643p-23, 0x1.e64d87b20e9b5p-27,
     -0x1.062010966acbfp-29, 0x1.3d145f87403f9p-32, -0x1.a6c7bc1bce7cbp-35, 0x1.323b62f684094p-37,
     -0x1.d3d64745fa7efp-40, 0x1.80ee4ee96800dp-42, -0x1.aff6f40020063p-44, 0x1.9e1402d746dd4p-46},
};

// e^(x) sqrt(x) K1 from x = 1, 2, 4, 8 on: a, b, then powers of a / x - b
inline constexpr double kK1Far[][17] = {
    {0x1p+2, 0x1.8000000000000p+1, 0x1.8d4b120a8fa94p+0, 0x1.64930b407d8f2p-4,
     -0x1.8f26b39cae0b0p-9, 0x1.f89d20b63c57ep-13, -0x1.aff05f6aba868p-16, 0x1.b6cc304e61d9dp-19,
     -0x1.f358b8632ba1ep-22, 0x1.3473d46aece67p-24, -0x1.95d0b9c9d1196p-27, 0x1.18c0b2928829fp-29,
     -0x1.94b5c8ad9a6b0p-32, 0x1.2ab806a77d96cp-34, -0x1.c9b176ac800bbp-37, 0x1.ac697ca6469c0p-39,
     -0x1.5f437e01b4835p-41},
    {0x1p+3, 0x1.8000000000000p+1, 0x1.69dc65513e397p+0, 0x1.9287973ce5fb8p-5,
     -0x1.2ffb8d8a8b133p-10, 0x1.11235b7e5c6b6p-14, -0x1.5886852b2f873p-18, 0x1.08da9e2bc6e9ep-21,
     -0x1.d1bf67ff5d7f0p-25, 0x1.c418eeb0752bcp-28, -0x1.d9e315cf980f3p-31, 0x1.083d606cec454p-33,
     -0x1.36281ecc9f850p-36, 0x1.7a4a307ead5fep-39, -0x1.e08c3491e2b68p-42, 0x1.6356e5059bbe1p-44,
     -0x1.e7015025aec1dp-47},
    {0x1p+4, 0x1.8000000000000p+1, 0x1.5642a5c18b38ap+0, 0x1.b35327a378a6ep-6,
     -0x1.94c9f8cd87aa2p-12, 0x1.d75f7d5f5dc06p-17, -0x1.90355c4bd7870p-21, 0x1.aaa068d48d86ep-25,
     -0x1.0a5f2ad3f852bp-28, 0x1.7690189360377p-32, -0x1.212d9f0b535cfp-35, 0x1.e1ea9a97bb3c4p-39,
     -0x1.abffc434a9652p-42, 0x1.90a61e0bb4c0dp-45, -0x1.8995d9bb8da4cp-48, 0x1.b112fd0c4ec11p-51,
     -0x1.d0848094829fcp-54},
    {0x1p+4, 0x1p+0, 0x1.483a94b0ee353p+0, 0x1.cfdb8076bf305p-6, -0x1.02b2e98ba6e5bp-11,
     0x1.801dee859bc81p-16, -0x1.b539452adfdcap-20, 0x1.45e63596fd34dp-23, -0x1.2709a0efe8b1bp-26,
     0x1.36612965a9244p-29, -0x1.709b355d4801bp-32, 0x1.e475e929fdabcp-35, -0x1.5ae013fdb6701p-37,
     0x1.0699107086a7bp-39, -0x1.acc2a58780235p-42, 0x1.dc75547a9e207p-44, -0x1.c60c6dab34e0fp-46},
};

// K0 less its logarithm, in powers of x^2, x <= 1
inline constexpr double kK0Near[] = {
    0x1.dadb014541eb2p-4, 0x1.1dadb014541edp-2, 0x1.9dadb01453f6ep-6, 0x1.bb90e85e13c4cp-11,
    0x1.f474766fbb30ep-17, 0x1.5d6b288467837p-23, 0x1.4c1f240dddcafp-30, 0x1.d18d9ed13d0b1p-38,
};

// what multiplies ln x
inline constexpr double kK0Log[] = {
    0x1p+0, 0x1.0000000000001p-2, 0x1.ffffffffffe3fp-7, 0x1.c71c71c738872p-12,
    0x1.c71c71ab8af7fp-18, 0x1.2345763ae3517p-24, 0x1.02dfb038e0bb4p-31, 0x1.577cf3fcbdc67p-39,
};

// K1 less its logarithm and pole, over x, in powers of x^2, x <= 1
inline constexpr double kK1Near[] = {
    -0x1.3b5b6028a83d6p-2, -0x1.5dadb014541ecp-4, -0x1.303ae729ff27ep-8, -0x1.d802af7a6fc0cp-14,
    -0x1.a2918212c418cp-20, -0x1.e212b2dc0eadfp-27, -0x1.86258b263d5c4p-34, -0x1.db68a108d714bp-42,
};

// what multiplies ln x, over x
inline constexpr double kK1Log[] = {
    0x1p-1, 0x1p-4, 0x1.55555555554f2p-9, 0x1.c71c71c728e92p-15, 0x1.6c16c15fd9cc5p-21,
    0x1.845c97188073fp-28, 0x1.27dd483de94d0p-35, 0x1.56e4a60cec7ecp-43,
};

}  // namespace vqmath63::bessel
