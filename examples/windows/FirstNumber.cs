// C#, late bound. In a project for Windows: dotnet new console, this file in place of Program.cs,
// dotnet run. Where this file was made there is no .NET for Windows to run it in: its calls are held
// to the type library by their names and the number of their arguments.
using System;

static class FirstNumber
{
    static dynamic Create(string name) => Activator.CreateInstance(Type.GetTypeFromProgID(name, true));

    [STAThread]  // or each call goes from thread to thread
    static void Main()
    {
        // Sample 1 is element 1: element 0, which .NET's arrays have, is not read.
        dynamic integrate = Create("vq140Analyse.ztIntegrate");
        float[] x = { 0, 0, 1, 2 }, y = { 0, 0, 1, 4 };
        Console.WriteLine("area " + integrate.Integral(x, y));

        // Results come back in variables that are handed over with ref.
        dynamic statistics = Create("vq140Analyse.ztStatistics");
        float[] rates = { 0, 10, -999.25f, 20, 30 };
        object kept = null;
        int count = 0;
        bool ok = false;
        statistics.RemoveNulls(-999.25f, rates, ref kept, ref count, ref ok);
        statistics.BasicStatistics(ref kept, ref ok);
        Console.WriteLine(count + " values, mean " + statistics.xBar);

        // What a member refuses is an exception with a text.
        try { integrate.Integral(7, y); }
        catch (Exception failure) { Console.WriteLine(failure.Message); }
    }
}
