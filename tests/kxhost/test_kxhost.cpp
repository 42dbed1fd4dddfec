// The host classes as macros use them: loaded with use(), then pictures and
// regions through their methods, and a picture through an HDF5 file that
// h5dump reads back.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>

#include "KdoSession.h"

using kdotest::Session;

namespace {
std::string load() { return std::string("use(\"") + KXHOST_LIBRARY + "\")\n"; }
// Every echo of a value followed by a blank, so that the values can be read back.
std::string spaced(std::string script) {
  std::string out;
  for (std::size_t at = 0, next; at < script.size(); at = next + 1) {
    next = script.find('\n', at);
    const std::string line = script.substr(at, next - at);
    out += line + "\n";
    if (line.rfind("echo(", 0) == 0) out += "echo(\" \")\n";
  }
  return out;
}
}  // namespace

TEST(HostClasses, PictureAndRegion) {
  Session s;
  const std::string out = s.run(load() + spaced(
                                "PICTURE p\np.alloc(40,60)\np.ramp(1.0,0.5)\nFLOAT f\nf=p.getPixel(2,4)\necho(f)\n"
                                "p.setPixel(0,0,100.0)\nf=p.max()\necho(f)\nf=p.min()\necho(f)\n"
                                "REGION r\nr.rect(0,0,9,9)\nINT n\nn=r.count()\necho(n)\n"
                                "REGION c\nc.circle(30,20,5)\nr.unite(c)\nn=r.count()\necho(n)\n"
                                "REGION t\nt.threshold(p,30.0,200.0)\nn=t.count()\necho(n)\n"
                                "f=c.mean(p)\necho(f)\nPICTURE q\nq=p\nq.scale(2.0)\nf=q.max()\necho(f)\n"));
  EXPECT_EQ(s.lastError(), 0u) << out;
  double v[3];
  ASSERT_EQ(std::sscanf(out.c_str(), "%le%le%le", &v[0], &v[1], &v[2]), 3) << out;
  EXPECT_DOUBLE_EQ(v[0], 4.0);    // 1 + 0.5 * (2 + 4)
  EXPECT_DOUBLE_EQ(v[1], 100.0);
  EXPECT_DOUBLE_EQ(v[2], 1.5);    // pixel (0,1): pixel (0,0) was set to 100
  // 100 pixels of the rectangle; a circle of radius 5 is 81 pixels or so.
  EXPECT_NE(out.find(" 100 "), std::string::npos) << out;
  EXPECT_NE(out.find(" 2.000000e+02 "), std::string::npos) << out;
  // The picture's values 30..200: 1 + 0.5 * (l + k) >= 30 for l + k >= 58,
  // and the pixel set to 100.
  int fromRamp = 0;
  for (int l = 0; l < 40; ++l)
    for (int k = 0; k < 60; ++k) fromRamp += (l + k >= 58);
  EXPECT_NE(out.find(" " + std::to_string(fromRamp + 1) + " "), std::string::npos) << out;
  // The circle's mean is the ramp at its centre (symmetric around it).
  EXPECT_NE(out.find(" 2.600000e+01 "), std::string::npos) << out;  // 1 + 0.5 * 50
}

TEST(HostClasses, PictureThroughHDF5) {
  Session s;
  const std::string file = s.path("pic.h5");
  s.run(load() + "PICTURE p\np.alloc(3,4)\np.ramp(0.0,1.0)\np.saveHDF5(\"" + file +
        "\",\"/Bilder/Leuchte\")\nPICTURE q\nq.loadHDF5(\"" + file +
        "\",\"/Bilder/Leuchte\")\nFLOAT f\nf=q.getPixel(2,3)\necho(f)\nINT w\nw=q.width()\necho(w)\n"
        "q.loadHDF5(\"" + file + "\",\"/nothing\")\n");
  EXPECT_NE(s.lastError(), 0u);
  const std::string out = Session::slurp(s.path("o.txt"));
  EXPECT_NE(out.find("5.000000e+004"), std::string::npos) << out;
  FILE* dump = ::popen(("h5dump -d /Bilder/Leuchte " + file + " 2>&1").c_str(), "r");
  ASSERT_NE(dump, nullptr);
  std::string text;
  char buffer[256];
  while (std::fgets(buffer, sizeof buffer, dump)) text += buffer;
  ::pclose(dump);
  EXPECT_NE(text.find("DATASPACE  SIMPLE { ( 3, 4 ) / ( 3, 4 ) }"), std::string::npos) << text;
  EXPECT_NE(text.find("(2,0): 2, 3, 4, 5"), std::string::npos) << text;
  // Loading the library twice registers its classes twice: the second time
  // fails at the class line, the classes stay.
  s.run(load());
  kx::deleteError();
  EXPECT_NE(Session::slurp(s.path("e.txt")).find("Klasse PICTURE existiert schon"), std::string::npos);
}

TEST(HostClasses, ColourPictureToLxyAndDominantWavelength) {
  Session s;
  const std::string out = s.run(load() + spaced(
      "COLORPICTURE c\nc.alloc(2,3)\nc.fill(180.0,160.0,40.0)\nc.convert(32)\nLITERAL n\nn=c.spaceName()\n"
      "echo(n)\nFLOAT v\nv=c.getValue(1,2,1)\necho(v)\nv=c.dominantWavelength(0,0)\necho(v)\n"
      "c.convert(16384)\nv=c.getValue(0,0,0)\necho(v)\nc.convert(1)\n"));
  std::istringstream in(out);
  std::string name;
  double x, lambdaOfPixel, lambdaOfWst;
  in >> name >> x >> lambdaOfPixel >> lambdaOfWst;
  EXPECT_EQ(name, "Lxy") << out;
  // x of CIE RGB (180, 160, 40) through the CIE RGB matrix.
  const double X = 2.7689 * 180 + 1.7518 * 160 + 1.1302 * 40, Y = 180 + 4.5907 * 160 + 0.0601 * 40,
               Z = 0.0565 * 160 + 5.5943 * 40;
  EXPECT_NEAR(x, X / (X + Y + Z), 1e-6);
  EXPECT_GT(lambdaOfPixel, 565);  // a yellow
  EXPECT_LT(lambdaOfPixel, 585);
  EXPECT_NEAR(lambdaOfWst, lambdaOfPixel, 1e-3);  // the whole picture to WST says the same
  // WST has no way back.
  EXPECT_EQ(s.lastError(), 0xe072108eUL);
}

TEST(HostClasses, ClassifierAndList) {
  Session s;
  const std::string ini = s.path("klass.ini");
  const std::string out = s.run(load() + spaced(
                                "PICTURE p\np.alloc(10,10)\np.ramp(0.0,1.0)\nCLASSIFIER k\nk.threshold(3)\n"
                                "k.setThreshold(0,5.0)\nk.setThreshold(1,12.0)\nINT n\nn=k.count(p,0)\necho(n)\n"
                                "n=k.count(p,2)\necho(n)\nn=k.classOf(12.0)\necho(n)\nPICTURE c\nk.classify(p,c)\n"
                                "FLOAT f\nf=c.max()\necho(f)\nk.save(\"" + ini + "\",\"K\")\nCLASSIFIER r\n"
                                "r.threshold(3)\nr.load(\"" + ini + "\",\"K\")\nf=r.getThreshold(1)\necho(f)\n"
                                "CLASSLIST list\nlist.defaults()\nn=list.addLuminance(1.0,2.0)\necho(n)\n"
                                "n=list.addLuminance(1.0,2.0)\necho(n)\nn=list.size()\necho(n)\n"));
  EXPECT_EQ(s.lastError(), 0u) << out;
  // l + k < 5: 15 pixels; l + k >= 12: 28 pixels of the 10 x 10 ramp.
  EXPECT_EQ(out, "15 28 2 2.000000e+00 1.200000e+01 13 13 14 ") << out;
  s.run("k.setThreshold(3,1.0)\n");
  EXPECT_EQ(s.lastError(), 0x5100000u);
}

TEST(HostClasses, Results) {
  Session s;
  const std::string ini = s.path("result.ini");
  const std::string out = s.run(load() + spaced(
                                "PICTURE p\np.alloc(4,5)\np.ramp(0.0,1.0)\nRESULT r\nr.add(p)\nr.stop()\nFLOAT f\n"
                                "f=r.get(1)\necho(f)\nf=r.get(13)\necho(f)\nRESULT h\nh.kind(\"hist\")\n"
                                "h.hist(0.0,2.0,8.0)\nh.add(p)\nh.stop()\nINT n\nn=h.size()\necho(n)\n"
                                "f=h.entry(0,1)\necho(f)\nh.save(\"" + ini + "\",\"H\")\nRESULT g\ng.kind(\"hist\")\n"
                                "g.load(\"" + ini + "\",\"H\")\ng.add(p)\ng.stop()\nf=g.entry(1,6)\necho(f)\n"
                                "REGION c\nc.circle(2,1,1)\nRESULT q\nq.addRegion(p,c)\nq.stop()\nf=q.get(0)\necho(f)\n"));
  EXPECT_EQ(s.lastError(), 0u) << out;
  // The 4 x 5 ramp l + k: mean 3.5, maximum 7 at column 4 (line 3). Bins
  // [0,2) .. [6,8) hold 3, 5, 6, 4 pixels; 8 lies above, the last kept bin
  // is left out: 3 bins, the first with 3. Read back: the second bin's
  // centre 3. The cross of radius 1: 5 pixels.
  EXPECT_EQ(out, "3.500000e+00 4.000000e+00 3 3.000000e+00 3.000000e+00 5.000000e+00 ") << out;
  s.run("f=h.entry(3,1)\n");
  EXPECT_EQ(s.lastError(), 0x5100000u);
  s.run("r.kind(\"circle\")\n");
  EXPECT_EQ(s.lastError(), 0x5100000u);
  s.run("r.hist(0.0,1.0,2.0)\n");
  EXPECT_EQ(s.lastError(), 0x5100000u);
}

TEST(HostClasses, ObjectList) {
  Session s;
  const std::string oa = s.path("list.oa");
  const std::string out = s.run(load() + spaced(
                                "OBJLIST o\nINT a\na=o.rect(0,0,9,9)\nINT b\nb=o.rect(5,5,14,14)\nINT k\n"
                                "k=o.select(a)\nk=o.select(b)\nINT g\ng=o.group(\"xor\")\necho(g)\nLITERAL t\n"
                                "t=o.name(b)\necho(t)\nk=o.pixels(g)\necho(k)\no.save(\"" + oa + "\")\n"
                                "OBJLIST p\np.load(\"" + oa + "\")\nk=p.father(a)\necho(k)\n"
                                "p.erase(g,1)\nk=p.size()\necho(k)\n"));
  EXPECT_EQ(s.lastError(), 0u) << out;
  // Two 10 x 10 squares overlapping in 5 x 5: their XOR has 150 pixels.
  EXPECT_EQ(out, "2 1.2 150 2 0 ") << out;
  s.run("k=o.pixels(7)\n");
  EXPECT_EQ(s.lastError(), 0xe7422040u);
  s.run("k=o.group(\"nand\")\n");
  EXPECT_EQ(s.lastError(), 0x5100000u);
}

TEST(HostClasses, Statistic) {
  Session s;
  const std::string out = s.run(load() + spaced(
                                "PICTURE p\np.alloc(10,10)\np.ramp(0.0,1.0)\nOBJLIST o\nINT i\ni=o.rect(0,0,4,4)\n"
                                "CLASSIFIER k\nk.threshold(2)\nk.setThreshold(0,4.0)\nSTATISTIC st\nst.classifier(k)\n"
                                "st.bind(p,o,i)\nINT r\nr=st.update()\necho(r)\nr=st.update()\necho(r)\nFLOAT f\n"
                                "f=st.get(0,0)\necho(f)\nf=st.get(1,1)\necho(f)\n"));
  EXPECT_EQ(s.lastError(), 0u) << out;
  // The 5 x 5 square of l + k: 10 pixels below 4; the other 15 sum to 80.
  EXPECT_EQ(out, "1 0 1.000000e+01 5.333333e+00 ") << out;
  s.run("k.threshold(3)\nr=st.update()\n");  // its classifier replaced under it
  EXPECT_EQ(s.lastError(), 0x7000000u);
}

TEST(HostClasses, IntegrationTimes) {
  Session s;
  const std::string out = s.run(load() + spaced(
                                "INTTIME t\nt.range(1.0,0.5,3.0)\nINT n\nn=t.count()\necho(n)\nt.linear(1.0)\n"
                                "LITERAL q\nq=t.sequence()\necho(q)\nFLOAT f\nf=t.nearest(2.2)\necho(f)\n"));
  EXPECT_EQ(s.lastError(), 0u) << out;
  EXPECT_EQ(out, "5 1 2 3 2.000000e+00 ") << out;
  s.run("t.logarithmic(0.5)\n");
  EXPECT_EQ(s.lastError(), 0xe5123003u);
}
