#!/usr/bin/env python3
# Opens what `analyze --format netcdf` writes as others do, and compares it with the file it was made of.
# Usage: read_profiles.py VEXA-CLI IGRA-FILE FSL-FILE OUTPUT; exit code 77 where xarray is missing.
import csv
import subprocess
import sys

try:
    import numpy as np
    import xarray as xr
    import netCDF4  # noqa: F401, by which xarray reads the file
except ImportError as missing:
    print(missing)
    sys.exit(77)

cli, igra, fsl, output = sys.argv[1:]
done = subprocess.run(
    [cli, "analyze", igra, fsl, f"{fsl}#2", "--format", "netcdf", "-o", output],
    capture_output=True, text=True)
if "built without the netCDF library" in done.stderr:
    sys.exit(77)
assert done.returncode == 0, done.stderr

data = xr.open_dataset(output)
assert data.attrs["featureType"] == "profile" and data.attrs["Conventions"] == "CF-1.8"
assert data.sizes["profile"] == 3, data.sizes
assert data["row_size"].attrs["sample_dimension"] == "obs"
assert int(data["row_size"].sum()) == data.sizes["obs"]
assert str(data["time"].values[0])[:16] == "1999-12-31T11:00", data["time"].values
assert np.allclose(data["latitude"].values[0], -33.45)

# The first ascent of the IGRA file: 965 hPa, 24.8 C, 3.1 m/s from 180 degrees at the ground.
count = int(data["row_size"].values[0])
first = data.isel(obs=slice(0, count))
assert np.all(np.diff(first["altitude"].values) >= 0)
press = first["pressure"].values
assert np.allclose(press[0], 965) and np.allclose(first["temperature"].values[0], 24.8)
assert np.allclose(first["wind_speed"].values[0], 3.1 / 0.5144, atol=0.1)
at850 = int(np.nanargmin(abs(press - 850)))
assert np.allclose(first["wind_direction"].values[at850], 210)
assert data["temperature"].attrs["units"] == "degC"
assert data["pressure"].attrs["standard_name"] == "air_pressure"

# What the indices say is what the table says.
table = subprocess.run([cli, "analyze", fsl, "--format", "csv"], capture_output=True, text=True)
heads, row = list(csv.reader(table.stdout.splitlines()))[:2]
for head, variable in (("KI (C)", "index_KI"), ("CAPE total (J/kg)", "index_CAPE_total")):
    value = row[heads.index(head)]
    found = float(data[variable].values[1])
    assert np.isnan(found) if value == "" else abs(found - float(value)) < 1e-3, (head, value, found)
print("as it should be")
